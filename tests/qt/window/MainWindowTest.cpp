#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QProgressBar>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QToolButton>

#include "qt/theme/ReadableColor.h"
#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::IsEmpty;

const std::string resources = INSTALLER_RESOURCES;
constexpr const char* pages[] = {"licenseView", "hostsView", "rtfView", "installFilesView",
                                 "registerView"};

/// The desktop's font while this lives.
class DesktopFont {
  public:
    explicit DesktopFont(const QFont& font) { set(font); }
    DesktopFont(const DesktopFont&) = delete;
    DesktopFont& operator=(const DesktopFont&) = delete;
    ~DesktopFont() { set(before_); }

  private:
    static void set(const QFont& font) {
        QApplication::setFont(font);
        QCoreApplication::processEvents();
    }

    QFont before_ = QApplication::font();
};

/// The window that ships, over an owner made of values.
class MainWindowTest : public InterfaceTest {
  protected:
    std::unique_ptr<Interface> interface;
    std::vector<std::unique_ptr<Interface>> rows;

    void SetUp() override {
        for (const char* name : {"MainWindow.ui", "Step Indicator.ui", "CustomInstall.ui"}) {
            bundle.resources[name] = resources + "/" + name;
        }
    }

    void TearDown() override {
        rows.clear();
        interface.reset();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setPalette(QPalette());
    }

    void open() {
        interface = loader.load("MainWindow", owner);
        ASSERT_NE(interface, nullptr);
        const auto pageArea = interface->view("dynamicView");
        for (const char* name : pages) {
            interface->view(name)->setHidden(true);
            pageArea->addSubview(interface->view(name));
        }
        for (int step = 0; step < 5; ++step) addRow(step, "Step " + std::to_string(step));
        turnTo("licenseView");
        interface->window("mainWindow")->centerAndShow();
        QCoreApplication::processEvents();
    }

    void addRow(int step, const std::string& text) {
        auto row = loader.load("Step Indicator", owner);
        ASSERT_NE(row, nullptr);
        const auto list = interface->view("stepIndicatorView");
        const auto view = row->view("stepIndicatorView");
        const double height = view->size().height;
        view->setFrame({0, list->size().height - height * (step + 1)},
                       {list->size().width, height});
        list->addSubview(view);
        row->textField("label")->setText(text);
        row->imageView("indicator")->setImage({resources + "/DotGray.tiff"});
        rows.push_back(std::move(row));
    }

    void turnTo(const std::string& page) {
        for (const char* name : pages) interface->view(name)->setHidden(name != page);
        QCoreApplication::processEvents();
    }

    static QMainWindow& window() { return named<QMainWindow>("mainWindow"); }

    /// The rows' own views have the same name.
    static QWidget& stepList() { return *window().findChild<QWidget*>("stepIndicatorView"); }

    static QColor colorOfPane() {
        const QImage seen = window().grab().toImage();
        return seen.pixelColor(placeOf(named<QWidget>("stepsPane")).bottomLeft() + QPoint(5, -5));
    }

    static QRect placeOf(const QWidget& widget) {
        return {widget.mapTo(&window(), QPoint()), widget.size()};
    }

    static QPoint centre(const char* name) {
        return placeOf(*window().findChild<QWidget*>(name)).center();
    }
};

TEST_F(MainWindowTest, EveryDescriptionFitsItsOwnControls) {
    open();
    EXPECT_NE(loader.load("CustomInstall", owner), nullptr);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(MainWindowTest, EveryPartThatTheCoreActsOnIsThere) {
    open();
    for (const char* name : {"forwardButton", "backwardButton", "stepIndicatorView"}) {
        EXPECT_NE(interface->view(name), nullptr) << name;
    }
    EXPECT_NE(interface->list("foundHostsController"), nullptr);
    EXPECT_NE(interface->progressIndicator("installProgress"), nullptr);
    const auto custom = loader.load("CustomInstall", owner);
    EXPECT_NE(custom->view("customInstallView"), nullptr);
    EXPECT_NE(custom->list("scriptsOrPanelsArrayController"), nullptr);
}

TEST_F(MainWindowTest, NoTextIsFixedInADescription) {
    const QRegularExpression fixed(
        "<property name=\"(text|title|windowTitle|toolTip|html|accessibleName)\"");
    for (const auto& [name, path] : bundle.resources) {
        QFile file(toQt(path));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << path;
        EXPECT_FALSE(fixed.match(QString::fromUtf8(file.readAll())).hasMatch()) << name;
    }
}

TEST_F(MainWindowTest, TheWindowKeepsItsSizeOnEveryPage) {
    open();
    const QSize before = window().size();
    const QSize least = window().minimumSizeHint();
    for (const char* page : pages) {
        turnTo(page);
        EXPECT_EQ(window().size(), before) << page;
        EXPECT_EQ(window().minimumSizeHint(), least) << page;
    }
}

TEST_F(MainWindowTest, TheHeadingIsBoldAndOfFourteenPoints) {
    QFont ofTenPoints = QApplication::font();
    ofTenPoints.setPointSizeF(10);
    const DesktopFont font(ofTenPoints);
    open();
    EXPECT_EQ(named<QLabel>("mainLabel").font().pointSizeF(), 14);
    EXPECT_TRUE(named<QLabel>("mainLabel").font().bold());
}

TEST_F(MainWindowTest, TheHeadingStaysLargerThanTheTextWhateverFontTheDesktopHas) {
    open();
    for (const double points : {7.0, 10.0, 16.0, 24.0}) {
        QFont desktop = QApplication::font();
        desktop.setPointSizeF(points);
        const DesktopFont font(desktop);
        const double heading = named<QLabel>("mainLabel").font().pointSizeF();
        EXPECT_GE(heading, 1.4 * named<QLabel>("informativeLabel").font().pointSizeF()) << points;
        EXPECT_EQ(named<QLabel>("informativeLabel").font().pointSizeF(), points);
    }
}

TEST_F(MainWindowTest, TheLastPageHasOneLargeLine) {
    open();
    turnTo("registerView");
    owner.change("showsOutcome", true);
    const auto points = [](const char* name) { return named<QLabel>(name).font().pointSizeF(); };
    EXPECT_LT(points("mainLabel"), points("informativeLabel"));
    EXPECT_GT(points("outcomeLabel"), points("informativeLabel"));
}

TEST_F(MainWindowTest, TheMenusSignStandsBelowTheTextsEdge) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QApplication::setLayoutDirection(direction);
        open();
        const auto& button = named<QToolButton>("menuButton");
        const QRect place = placeOf(button);
        const int beside = (place.width() - button.iconSize().width()) / 2;
        const QRect line = placeOf(named<QWidget>("separator"));
        if (direction == Qt::LeftToRight) {
            EXPECT_EQ(place.left() + beside, line.left());
            EXPECT_EQ(placeOf(named<QWidget>("forwardButton")).right(), line.right());
        } else {
            EXPECT_EQ(place.right() - beside, line.right());
            EXPECT_EQ(placeOf(named<QWidget>("forwardButton")).left(), line.left());
        }
        interface.reset();
        rows.clear();
    }
}

TEST_F(MainWindowTest, TheDotsOfOtherStepsAreQuietInADarkWindowToo) {
    open();
    const auto contrastOfDot = [] {
        const auto* dot = stepList().findChild<QLabel*>("indicator");
        const QImage picture = dot->pixmap(Qt::ReturnByValue).toImage();
        return contrast(picture.pixelColor(picture.rect().center()), colorOfPane());
    };
    EXPECT_LE(contrastOfDot(), 5);
    QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(43, 43, 46)));
    QCoreApplication::processEvents();
    EXPECT_LE(contrastOfDot(), 5);
    EXPECT_GE(contrastOfDot(), 2);
    QApplication::setPalette(QPalette());
}

TEST_F(MainWindowTest, StepsStandInOrderFromTheTopAndSpanTheirList) {
    open();
    const auto& list = stepList();
    const auto labels = list.findChildren<QLabel*>("label");
    ASSERT_EQ(labels.size(), 5);
    int bottom = 0;
    for (const QLabel* label : labels) {
        const QWidget& row = *label->parentWidget();
        EXPECT_EQ(row.width(), list.width());
        EXPECT_EQ(row.y(), bottom);
        bottom = row.geometry().bottom() + 1;
    }
}

TEST_F(MainWindowTest, TheStepListGrowsWithItsLongestText) {
    open();
    rows[2]->textField("label")->setText("Ein außergewöhnlich langer Name eines Schrittes");
    QCoreApplication::processEvents();
    for (const QLabel* label : stepList().findChildren<QLabel*>("label")) {
        EXPECT_GE(label->width(), label->sizeHint().width());
    }
}

TEST_F(MainWindowTest, TheStepListIsDarkInADarkWindowAndCanBeReadInBoth) {
    open();
    rows[0]->textField("label")->setColor({0, 0, 0});
    rows[1]->textField("label")->setColor({128, 128, 128});
    const auto look = [](int darkest, int lightest) {
        const QColor ground = colorOfPane();
        EXPECT_GE(ground.lightness(), darkest);
        EXPECT_LE(ground.lightness(), lightest);
        const auto labels = stepList().findChildren<QLabel*>("label");
        EXPECT_GE(contrast(labels[0]->palette().color(QPalette::WindowText), ground), 7);
        EXPECT_GE(contrast(labels[1]->palette().color(QPalette::WindowText), ground), 4.5);
        EXPECT_GE(contrast(named<QLabel>("productNameLabel").palette().color(QPalette::WindowText),
                           ground),
                  7);
    };
    look(240, 255);
    QApplication::setPalette(QPalette(QColor(60, 60, 64), QColor(43, 43, 46)));
    QCoreApplication::processEvents();
    look(0, 60);
    QApplication::setPalette(QPalette());
    QCoreApplication::processEvents();
    look(240, 255);
}

TEST_F(MainWindowTest, TheMakersPictureStandsBelowTheStepsWhereThereIsOne) {
    bundle.resources["AppIcon.png"] = resources + "/AppIcon.png";
    open();
    EXPECT_TRUE(named<QLabel>("productIcon").isVisible());
    EXPECT_FALSE(named<QLabel>("sidebarPicture").isVisible());
    interface.reset();
    rows.clear();
    bundle.resources["Sidebar.png"] = resources + "/AppIcon.png";
    open();
    EXPECT_TRUE(named<QLabel>("sidebarPicture").isVisible());
    EXPECT_GT(placeOf(named<QLabel>("sidebarPicture")).top(), placeOf(stepList()).bottom());
}

TEST_F(MainWindowTest, TheWindowFitsOnASmallScreen) {
    bundle.resources["AppIcon.png"] = resources + "/AppIcon.png";
    bundle.resources["Sidebar.png"] = resources + "/AppIcon.png";
    open();
    constexpr QSize screen(1024, 600);
    constexpr int titleBarAndPanel = 64;
    EXPECT_LE(window().width(), screen.width());
    EXPECT_LE(window().height(), screen.height() - titleBarAndPanel);
}

TEST_F(MainWindowTest, TheStepsStandWhereReadingStarts) {
    open();
    EXPECT_LT(centre("stepsPane").x(), centre("mainLabel").x());
    EXPECT_LT(centre("indicator").x(), centre("label").x());
    EXPECT_LT(centre("backwardButton").x(), centre("forwardButton").x());
}

TEST_F(MainWindowTest, FromRightToLeftEverythingIsMirrored) {
    QApplication::setLayoutDirection(Qt::RightToLeft);
    open();
    EXPECT_GT(centre("stepsPane").x(), centre("mainLabel").x());
    EXPECT_GT(centre("indicator").x(), centre("label").x());
    EXPECT_GT(centre("backwardButton").x(), centre("forwardButton").x());
}

TEST_F(MainWindowTest, TheKeyboardGoesThroughEveryPageInTheOrderOfReading) {
    owner.values = {{"enableForward", true},
                    {"enableBackward", true},
                    {"canSelectAllHosts", true},
                    {"successfulInstall", true},
                    {"installedPlaces", std::vector<ListRow>{{.title = "Photoshop"}}},
                    {"hasFailedItems", true},
                    {"installationFailed", true},
                    {"showsOutcomeText", true},
                    {"installerLogExists", true}};
    open();
    for (const char* page : pages) {
        turnTo(page);
        std::vector<const QWidget*> order;
        const QWidget* start = &named<QWidget>("forwardButton");
        for (const QWidget* next = start->nextInFocusChain(); next != start;
             next = next->nextInFocusChain()) {
            if (next->isVisible() && next->isEnabled() && (next->focusPolicy() & Qt::TabFocus)) {
                order.push_back(next);
            }
        }
        order.push_back(start);
        ASSERT_GE(order.size(), 2U);
        EXPECT_EQ(order[order.size() - 2]->objectName(), "backwardButton") << page;
        for (std::size_t i = 1; i < order.size(); ++i) {
            const QRect before = placeOf(*order[i - 1]);
            const QRect after = placeOf(*order[i]);
            EXPECT_TRUE(after.top() > before.bottom() || after.left() > before.right())
                << page << ": " << fromQt(order[i]->objectName());
        }
    }
}

TEST_F(MainWindowTest, APageThatGoesWithTheFocusHandsItToTheDefaultButton) {
    owner.values = {{"enableForward", true}, {"enableBackward", true}};
    open();
    turnTo("hostsView");
    named<QWidget>("foundHostsController").setFocus();
    turnTo("rtfView");
    EXPECT_EQ(window().focusWidget(), &named<QWidget>("forwardButton"));
}

TEST_F(MainWindowTest, TheLabelsAreAsLongAsLongTextsNeed) {
    const std::string text =
        "Die Software wird in Ordner installiert, die alle Benutzer dieses Computers gemeinsam "
        "verwenden. Möglicherweise werden Sie nach dem Kennwort eines Administrators gefragt. "
        "Das kann einige Minuten dauern; bitte lassen Sie den Computer währenddessen an.";
    owner.values = {{"mainLabelText", text}, {"pageText", text}};
    open();
    for (const char* name : {"mainLabel", "informativeLabel"}) {
        const auto& label = named<QLabel>(name);
        EXPECT_GE(label.height(), label.heightForWidth(label.width())) << name;
    }
}

TEST_F(MainWindowTest, TheProgressBarStaysInItsPlaceWhileTheTextsAboveItChange) {
    owner.values["pageText"] = std::string(400, 'x') + " is two lines long at least.";
    open();
    turnTo("installFilesView");
    const QRect before = placeOf(named<QWidget>("installProgress"));
    owner.change("pageText", std::string("One line"));
    QCoreApplication::processEvents();
    EXPECT_EQ(placeOf(named<QWidget>("installProgress")), before);
    // Another page does not inherit the room.
    owner.change("pageText", StyledText::fromPlainText("styled"));
    owner.change("pageText", std::string("One line"));
    QCoreApplication::processEvents();
    EXPECT_LT(placeOf(named<QWidget>("installProgress")).top(), before.top());
}

TEST_F(MainWindowTest, AFailureIsToldOnlyWhereThereIsOne) {
    open();
    turnTo("registerView");
    for (const char* name : {"failureReasonLabel", "failedItemsLabel", "failedItemsList",
                             "openLogButton", "copyLogButton", "copyReportButton"}) {
        EXPECT_FALSE(named<QWidget>(name).isVisible()) << name;
    }
    owner.change("installerLogExists", true);
    EXPECT_FALSE(named<QWidget>("openLogButton").isVisible());
    owner.change("installationFailed", true);
    owner.change("failureReason", std::string("Refused."));
    owner.change("hasFailedItems", true);
    for (const char* name : {"failureReasonLabel", "failedItemsLabel", "failedItemsList",
                             "openLogButton", "copyLogButton", "copyReportButton"}) {
        EXPECT_TRUE(named<QWidget>(name).isVisible()) << name;
    }
}

TEST_F(MainWindowTest, APluginThatIsInNoPhotoshopIsNotExplainedAsIfItWere) {
    owner.values["informativeText"] = StyledText::fromPlainText("Start Photoshop.");
    owner.values["noPhotoshopText"] = std::string("Into no Photoshop.");
    owner.values["showsOutcomeText"] = false;
    open();
    turnTo("registerView");
    EXPECT_TRUE(named<QWidget>("noPhotoshopLabel").isVisible());
    EXPECT_FALSE(named<QWidget>("registerTextView").isVisible());
    owner.change("noPhotoshopText", std::string());
    owner.change("showsOutcomeText", true);
    EXPECT_FALSE(named<QWidget>("noPhotoshopLabel").isVisible());
    EXPECT_TRUE(named<QWidget>("registerTextView").isVisible());
}

TEST_F(MainWindowTest, RegisteringIsOfferedRightBelowTheMessageAndOnlyAfterASuccess) {
    owner.values["informativeText"] = StyledText::fromPlainText("One line.");
    owner.values["showsOutcomeText"] = true;
    open();
    turnTo("registerView");
    EXPECT_FALSE(named<QWidget>("registerNowButton").isVisible());
    owner.change("successfulInstall", true);
    QCoreApplication::processEvents();
    ASSERT_TRUE(named<QWidget>("registerNowButton").isVisible());
    const int below = placeOf(named<QWidget>("registerNowButton")).top() -
                      placeOf(named<QWidget>("registerTextView")).bottom();
    EXPECT_GE(below, 0);
    EXPECT_LE(below, 24);
    EXPECT_LE(named<QWidget>("registerTextView").height(), 64);
}

TEST_F(MainWindowTest, TheListOfEditorsCanAlwaysBeAskedFor) {
    open();
    EXPECT_TRUE(named<QWidget>("configurePrismorExternalEditors").isEnabled());
}

TEST_F(MainWindowTest, WaitingTurnsIntoAGreenCheck) {
    owner.values["hostIsRunning"] = true;
    open();
    turnTo("rtfView");
    const auto green = [] {
        const QImage sign = named<QLabel>("waitingSign").pixmap(Qt::ReturnByValue).toImage();
        const QColor color = sign.pixelColor(sign.width() / 2, sign.height() / 6);
        return color.alpha() == 255 && color.green() > color.red() && color.green() > color.blue();
    };
    EXPECT_FALSE(green());
    owner.change("hostIsRunning", false);
    EXPECT_TRUE(green());
}

TEST_F(MainWindowTest, WhatCarriesNoTextHasANameForScreenReaders) {
    for (const char* key : {"steps_name", "hosts_name", "license_name", "message_name",
                            "progress_name", "failed_items", "installed_places"}) {
        bundle.tables["Localizable"][key] = key;
    }
    owner.values = {{"customInstallPathLabelText", std::string("Folder:")},
                    {"customInstallHostsExplanationText", std::string("Hosts:")},
                    {"backgroundImageName", std::string("Succeeded")}};
    open();
    const auto custom = loader.load("CustomInstall", owner);
    std::vector<QWidget*> nameless;
    nameless.push_back(&stepList());
    nameless.push_back(&named<QWidget>("backgroundImage"));
    for (QWidget* widget : QApplication::allWidgets()) {
        const bool carriesText =
            !qobject_cast<QTextBrowser*>(widget) && !qobject_cast<QListWidget*>(widget) &&
            !qobject_cast<QLineEdit*>(widget) && !qobject_cast<QProgressBar*>(widget);
        if (!carriesText) nameless.push_back(widget);
    }
    EXPECT_GE(nameless.size(), 9U);
    for (const QWidget* widget : nameless) {
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << fromQt(widget->objectName());
    }
}

TEST_F(MainWindowTest, TheCustomScreenHidesScriptsAndPanelsWhileNoHostHasAny) {
    const auto custom = loader.load("CustomInstall", owner);
    auto& screen = named<QWidget>("customInstallView");
    const auto isShown = [&](const char* name) {
        return named<QWidget>(name).isVisibleTo(&screen);
    };
    EXPECT_FALSE(isShown("scriptsOrPanelsLabel"));
    EXPECT_FALSE(isShown("scriptsOrPanelsArrayController"));
    EXPECT_FALSE(isShown("installScriptsAndPanelsSwitch"));
    owner.change("scriptsOrPanelsHostsExsist", true);
    EXPECT_TRUE(isShown("scriptsOrPanelsLabel"));
    EXPECT_TRUE(isShown("scriptsOrPanelsArrayController"));
    EXPECT_TRUE(isShown("installScriptsAndPanelsSwitch"));
    EXPECT_TRUE(named<QLineEdit>("customPathField").isReadOnly());
}

TEST_F(MainWindowTest, ThePicturesAreLargeEnoughForFineScreens) {
    EXPECT_GE(QImage(toQt(resources + "/DotBlue.tiff")).width(), 64);
    EXPECT_GE(QImage(toQt(resources + "/DotGray.tiff")).width(), 64);
    for (const char* name : {"/checkmark.png", "/Installer_Error.png"}) {
        const QImage picture(toQt(resources + name));
        EXPECT_GE(picture.width(), 256) << name;
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << name;
    }
}

}  // namespace
