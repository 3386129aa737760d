#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "qt/dialogs/QtAlerts.h"
#include "tests/qt/ModalDialog.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using installer::test::WhileModal;
using testing::ElementsAre;

const Alert question{"file-operation-error",
                     Alert::Style::warning,
                     "Problem",
                     "Could not install /a",
                     {"Proceed", "Stop"}};

void press(QWidget& widget, int key) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
}

std::size_t answerAfter(const Alert& alert, const std::function<void(QMessageBox&)>& act,
                        const test::FakeBundle& bundle = {}) {
    const WhileModal<QMessageBox> user([&](QMessageBox& box) {
        if (!box.isVisible()) return false;
        act(box);
        return true;
    });
    QtAlerts alerts(bundle);
    return alerts.runModal(alert);
}

QPushButton* button(const QMessageBox& box, const char* title) {
    for (auto* candidate : box.findChildren<QPushButton*>())
        if (candidate->text() == QString::fromUtf8(title)) return candidate;
    return nullptr;
}

/// What the box says, as it says it to a screen reader.
std::vector<std::string> spokenTexts(const QMessageBox& box) {
    std::vector<std::string> texts;
    for (auto* label : box.findChildren<QLabel*>()) {
        if (label->text().isEmpty() || !label->isVisible()) continue;
        texts.push_back(
            QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name).toStdString());
    }
    return texts;
}

TEST(QtAlerts, AnswersThePlaceOfThePressedButton) {
    EXPECT_EQ(answerAfter(question, [](auto& box) { button(box, "Proceed")->click(); }), 0u);
    EXPECT_EQ(answerAfter(question, [](auto& box) { button(box, "Stop")->click(); }), 1u);
}

TEST(QtAlerts, ReturnPressesTheFirstButton) {
    EXPECT_EQ(answerAfter(question, [](auto& box) { press(box, Qt::Key_Return); }), 0u);
}

TEST(QtAlerts, EscapeAnswersTheLastButton) {
    EXPECT_EQ(answerAfter(question, [](auto& box) { press(box, Qt::Key_Escape); }), 1u);
    Alert message = question;
    message.buttons = {"Proceed"};
    EXPECT_EQ(answerAfter(message, [](auto& box) { press(box, Qt::Key_Escape); }), 0u);
}

TEST(QtAlerts, ClosingTheBoxAnswersTheLastButton) {
    EXPECT_EQ(answerAfter(question, [](auto& box) { box.close(); }), 1u);
}

TEST(QtAlerts, ArrangesTheButtonsInTheGivenOrder) {
    Alert alert = question;
    alert.buttons = {"Zero", "One", "Two"};
    static_cast<void>(answerAfter(alert, [](QMessageBox& box) {
        EXPECT_LT(button(box, "Zero")->x(), button(box, "One")->x());
        EXPECT_LT(button(box, "One")->x(), button(box, "Two")->x());
        EXPECT_TRUE(button(box, "Zero")->isDefault());
        box.close();
    }));
}

TEST(QtAlerts, SaysWhatItIsToTestsAndScreenReaders) {
    static_cast<void>(answerAfter(question, [](QMessageBox& box) {
        EXPECT_EQ(box.objectName(), QStringLiteral("file-operation-error"));
        EXPECT_EQ(box.accessibleName(), QStringLiteral("Problem"));
        EXPECT_THAT(spokenTexts(box), ElementsAre("Problem", "Could not install /a"));
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        box.close();
    }));
    Alert alert = question;
    alert.style = Alert::Style::informational;
    static_cast<void>(answerAfter(alert, [](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Information);
        box.close();
    }));
}

TEST(QtAlerts, AreTitledWithTheProductAndTheirNumber) {
    test::FakeBundle bundle;
    bundle.tables = {{"Localizable",
                      {{"main_wnd_title_fmt", "Install %@"}, {"alert_number_fmt", "%1$@ (%2$@)"}}},
                     {"installer", {{"product_name", "Filters"}}}};
    Alert alert = question;
    const auto expect = [&](const char* title, const char* name) {
        static_cast<void>(answerAfter(
            alert,
            [&](QMessageBox& box) {
                EXPECT_EQ(box.windowTitle(), title);
                EXPECT_EQ(box.accessibleName(), name);
                box.close();
            },
            bundle));
    };
    expect("Install Filters", "Problem");
    alert.number = 2;
    expect("Install Filters (2)", "Problem (2)");
    alert.item = 5;
    alert.items = 7;
    // A product with the texts of an earlier installer has none for the item.
    expect("Install Filters (2)", "Problem (2)");
    bundle.tables["Localizable"]["alert_item_fmt"] = "%1$@ (%2$@, item %3$@ of %4$@)";
    expect("Install Filters (2, item 5 of 7)", "Problem (2, item 5 of 7)");
}

TEST(QtAlerts, ShowsMarkupAsText) {
    Alert alert = question;
    alert.title = "A <b>bold</b> title";
    alert.message = "Could not install /<img src=\"/etc/passwd\"><b>x</b>";
    alert.buttons = {"Proceed & go"};
    static_cast<void>(answerAfter(alert, [&](QMessageBox& box) {
        EXPECT_THAT(spokenTexts(box), ElementsAre(alert.title, alert.message));
        for (auto* label : box.findChildren<QLabel*>()) {
            if (label->text().isEmpty()) continue;
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        }
        auto* only = box.findChildren<QPushButton*>().value(0);
        EXPECT_EQ(
            QAccessible::queryAccessibleInterface(only)->text(QAccessible::Name).toStdString(),
            "Proceed & go");
        box.close();
    }));
}

TEST(QtAlerts, WrapsPathsThatAreTooLongForALine) {
    Alert alert = question;
    alert.message = "Could not install /" + std::string(2000, 'x') + "/";
    for (int index = 0; index < 200; ++index) alert.message += "folder/";
    static_cast<void>(answerAfter(alert, [&](QMessageBox& box) {
        EXPECT_LT(box.width(), 1000);
        for (auto* label : box.findChildren<QLabel*>()) {
            if (label->text().isEmpty()) continue;
            EXPECT_GE(label->width(), label->minimumSizeHint().width());
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        }
        EXPECT_THAT(spokenTexts(box), ElementsAre("Problem", alert.message));
        box.close();
    }));
}

TEST(QtAlerts, AMessageHasRoomForItsLinesWhereTheTitleIsShort) {
    Alert alert = question;
    alert.message = "Could not install /Applications/Adobe Photoshop CS6/Presets/Actions/a.atn";
    static_cast<void>(answerAfter(alert, [&](QMessageBox& box) {
        for (auto* label : box.findChildren<QLabel*>()) {
            if (label->accessibleName() != QString::fromStdString(alert.message)) continue;
            const QFontMetrics letters = label->fontMetrics();
            EXPECT_GE(label->width(), 40 * letters.averageCharWidth());
            EXPECT_LT(label->height(), 3 * letters.lineSpacing());
        }
        box.close();
    }));
}

TEST(QtAlerts, BelongsToTheWindowThatIsThere) {
    QMainWindow window;
    window.show();
    static_cast<void>(answerAfter(question, [&](QMessageBox& box) {
        EXPECT_EQ(box.parentWidget(), &window);
        EXPECT_TRUE(box.isModal());
        box.close();
    }));
}

TEST(QtAlerts, AnAlertWithoutButtonsIsAnsweredToo) {
    Alert alert = question;
    alert.buttons = {};
    EXPECT_EQ(answerAfter(alert, [](auto& box) { box.close(); }), 0u);
}

TEST(QtAlerts, OneAfterTheOtherCanBeShownWithoutAnyOtherWindow) {
    for (int index = 0; index < 3; ++index)
        EXPECT_EQ(answerAfter(question, [](auto& box) { button(box, "Stop")->click(); }), 1u);
}

}  // namespace
