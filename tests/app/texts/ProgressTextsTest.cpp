#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/texts/ProgressTexts.h"
#include "install/run/InstallProgress.h"
#include "tests/app/Wizard.h"

namespace installer::test {
namespace {

using std::chrono::seconds;

class ProgressTextsTest : public WizardTest {
  protected:
    ProgressTextsTest() {
        fake.bundle.tables["Localizable"]["progress_item_fmt"] = "Item %1$@ of %2$@";
        fake.bundle.tables["Localizable"]["progress_bytes_fmt"] = "%1$@ of %2$@";
        fake.bundle.tables["Localizable"]["time_left_minutes_fmt"] = "%@ min";
        fake.bundle.tables["Localizable"]["time_left_seconds_fmt"] = "%@ s";
        fake.bundle.tables["Localizable"]["authorization_reason"] = "%1$@ of %2$@ asks";
        fake.bundle.tables["installer"] = {{"product_name", "Filters 2"}, {"company_name", "Acme"}};
    }

    [[nodiscard]] std::string note(const ProgressReport& report) const {
        return progressNote(fake.bundle, report);
    }
};

TEST_F(ProgressTextsTest, SayNothingBeforeTheFirstItem) {
    EXPECT_EQ(note({.item = 0, .items = 4}), "");
}

TEST_F(ProgressTextsTest, NameTheItemAndTheTimeOnceItIsKnown) {
    EXPECT_EQ(note({.item = 3, .items = 12}), "Item 3 of 12");
    EXPECT_EQ(note({.item = 3, .items = 12, .timeLeft = seconds(180)}), "Item 3 of 12 · 3 min");
    EXPECT_EQ(note({.item = 3, .items = 12, .timeLeft = seconds(90)}), "Item 3 of 12 · 90 s");
}

TEST_F(ProgressTextsTest, SayHowMuchOfALargeItemIsCopied) {
    EXPECT_EQ(note({.item = 1, .items = 2, .itemBytes = 5'000'000, .itemTotal = 200'000'000}),
              "Item 1 of 2 · 5 MB of 200 MB");
    EXPECT_EQ(note({.item = 1, .items = 2, .itemBytes = 5, .itemTotal = 2000}), "Item 1 of 2");
}

TEST_F(ProgressTextsTest, CutTheNameOfAFileThatIsTooLongForALine) {
    EXPECT_EQ(progressFile({.file = "a.txt"}), "a.txt");
    const std::string fifty(50, 'x');
    EXPECT_EQ(progressFile({.file = fifty}), fifty);
    std::string letters;
    for (int count = 0; count < 51; ++count) letters += "ü";
    EXPECT_EQ(progressFile({.file = letters}), letters.substr(0, 98) + "…");
    EXPECT_EQ(progressFile({.file = fifty + "\xff" + fifty}), fifty + "\xff" + fifty);
}

TEST_F(ProgressTextsTest, LeaveOutWhatTheTableHasNoTextFor) {
    fake.bundle.tables["Localizable"].erase("progress_item_fmt");
    EXPECT_EQ(note({.item = 3, .items = 12, .timeLeft = seconds(20)}), "20 s");
}

TEST_F(ProgressTextsTest, TheWindowReadsTheLineWhileItInstalls) {
    fake.memory.addFile("/Installer.app/Contents/Resources/files/HD/Applications/Tool.app/x", "x");
    start();
    recordRefreshes();
    Lines notes;
    const auto reading = wizard->observeProperties([&](std::string_view property) {
        if (property == "progressNote") notes.push_back(textOf("progressNote"));
    });
    goTo(4);
    EXPECT_THAT(notes, testing::Contains("Item 1 of 1"));
}

TEST_F(ProgressTextsTest, TheReasonForTheQuestionIsShownOnlyWhileItMayBeAsked) {
    fake.memory.addFile("/Installer.app/Contents/Resources/files/HD/Applications/Tool.app/x", "x");
    fake.authorizations.asks = true;
    start();
    EXPECT_EQ(textOf("authorizationReason"), "");
    Lines reasons;
    const auto reading = wizard->observeProperties([&](std::string_view property) {
        if (property == "authorizationReason") reasons.push_back(textOf("authorizationReason"));
    });
    std::string whileAsked;
    fake.authorizations.status = [&](const std::vector<std::string>&) {
        whileAsked += textOf("authorizationReason") + ";";
        return 0;
    };
    goTo(4);
    EXPECT_TRUE(whileAsked.starts_with("Filters 2 of Acme asks;;")) << whileAsked;
    EXPECT_EQ(reasons.back(), "");
}

}  // namespace
}  // namespace installer::test
