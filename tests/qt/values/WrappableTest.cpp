#include <string>

#include <gtest/gtest.h>

#include "qt/values/QtText.h"
#include "qt/values/Wrappable.h"

namespace {

using namespace installer;

std::string shown(const std::string& text) {
    return fromQt(wrappable(toQt(text)).replace(QChar(0x200B), u'|'));
}

TEST(Wrappable, LeavesWordsAlone) {
    EXPECT_EQ(shown("Two words"), "Two words");
    EXPECT_EQ(shown(""), "");
}

TEST(Wrappable, ALineMayEndAfterEachPartOfAPath) {
    EXPECT_EQ(shown("In /Library/Plug-ins now"), "In /|Library/|Plug-ins now");
    EXPECT_EQ(shown("/a/"), "/|a/");
}

TEST(Wrappable, ALineMayEndWithinALongWord) {
    EXPECT_EQ(shown(std::string(90, 'x')),
              std::string(40, 'x') + "|" + std::string(40, 'x') + "|" + std::string(10, 'x'));
    EXPECT_EQ(shown(std::string(40, 'x')), std::string(40, 'x'));
}

TEST(Wrappable, ALetterIsNeverTakenApartFromItsAccent) {
    std::string word;
    for (int index = 0; index < 40; ++index) word += "e\u0301";
    EXPECT_EQ(shown(word + "x"), word + "|x");
}

}  // namespace
