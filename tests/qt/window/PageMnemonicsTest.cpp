#include <QAbstractButton>
#include <QFile>
#include <QKeySequence>
#include <QMainWindow>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>
#include <map>
#include <set>

#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;

const std::string sample = INSTALLER_RESOURCES;

/// The pages with the button texts that the owner gives on them, by their keys.
struct WalkedPage {
    const char* view;
    const char* backward;
    const char* forward;
};

constexpr WalkedPage walkedPages[] = {
    {"licenseView", "quit", "continue"},          {"hostsView", "go_back", "continue"},
    {"customInstallView", "go_back", "continue"}, {"rtfView", "go_back", "continue"},
    {"installFilesView", "go_back", "continue"},  {"registerView", "go_back", "finish"}};

std::map<std::string, std::string, std::less<>> tableOf(const std::string& language) {
    QFile file(toQt(sample + "/" + language + ".lproj/Localizable.strings"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << language;
    const QString text = QString::fromUtf8(file.readAll());
    static const QRegularExpression entry(R"re(^"([^"]+)" = "([^"\\]*)";)re",
                                          QRegularExpression::MultilineOption);
    std::map<std::string, std::string, std::less<>> table;
    for (auto found = entry.globalMatch(text); found.hasNext();) {
        const auto match = found.next();
        table[fromQt(match.captured(1))] = fromQt(match.captured(2));
    }
    return table;
}

/// The window that ships, with a language's texts, on every page with all that it can show.
class PageMnemonics : public InterfaceTest, public testing::WithParamInterface<const char*> {
  protected:
    std::map<std::string, std::string, std::less<>> texts = tableOf(GetParam());
    std::unique_ptr<Interface> interface;
    std::unique_ptr<Interface> custom;

    void SetUp() override {
        for (const char* name : {"MainWindow.ui", "CustomInstall.ui"}) {
            bundle.resources[name] = sample + "/" + name;
        }
        for (const auto& [key, text] : texts) bundle.tables["Localizable"][key] = text;
        owner.values = {{"customInstallButtonText", texts["custom_install_button"]},
                        {"registerNowText", texts["register_now"]},
                        {"launchHelpURLString", texts["launch_help_url_string"]},
                        {"customInstallBrowseButtonText", texts["custom_install_browse_button"]},
                        {"customInstallCheckBoxText", texts["custom_install_panels_checkbox"]}};
        for (const char* shown :
             {"canSelectAllHosts", "successfulInstall", "installerLogExists",
              "scriptsOrPanelsHostsExsist", "enableForward", "enableBackward"}) {
            owner.values[shown] = true;
        }
        interface = loader.load("MainWindow", owner);
        custom = loader.load("CustomInstall", owner);
        const auto area = interface->view("dynamicView");
        for (const WalkedPage& page : walkedPages) area->addSubview(viewOf(page));
        interface->window("mainWindow")->centerAndShow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    }

    void TearDown() override {
        custom.reset();
        interface.reset();
    }

    std::shared_ptr<View> viewOf(const WalkedPage& page) {
        const bool isCustom = std::string(page.view) == "customInstallView";
        return isCustom ? custom->view(page.view) : interface->view(page.view);
    }

    static QMainWindow& window() { return named<QMainWindow>("mainWindow"); }

    void turnTo(const WalkedPage& page) {
        for (const WalkedPage& each : walkedPages) viewOf(each)->setHidden(each.view != page.view);
        owner.change("goBackwardsText", texts[page.backward]);
        owner.change("goForwardText", texts[page.forward]);
        QCoreApplication::processEvents();
    }

    /// What stands on the page's buttons while Alt is held.
    static std::vector<QString> textsWithMarks() {
        QTest::keyPress(&window(), Qt::Key_Alt);
        std::vector<QString> marked;
        for (const auto* button : window().findChildren<QAbstractButton*>()) {
            if (button->isVisible() && button->isEnabled() && !button->text().isEmpty()) {
                marked.push_back(button->text());
            }
        }
        QTest::keyRelease(&window(), Qt::Key_Alt);
        return marked;
    }
};

TEST_P(PageMnemonics, EveryButtonOfAPageHasAKeyOfItsOwn) {
    for (const WalkedPage& page : walkedPages) {
        turnTo(page);
        const std::vector<QString> marked = textsWithMarks();
        EXPECT_GE(marked.size(), 2U) << page.view;
        std::set<QString> keys;
        for (const QString& text : marked) {
            const QString key = QKeySequence::mnemonic(text).toString();
            EXPECT_FALSE(key.isEmpty()) << page.view << ": " << fromQt(text);
            EXPECT_TRUE(keys.insert(key).second) << page.view << ": " << fromQt(text);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, PageMnemonics,
                         testing::Values("en", "de", "fr", "es", "ja", "ar"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
