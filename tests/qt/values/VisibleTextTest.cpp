#include <utility>

#include <gtest/gtest.h>

#include "qt/values/VisibleText.h"

namespace {

using namespace installer;

TEST(VisibleText, CharactersThatTurnTextAroundAreShownByNumber) {
    const std::pair<char16_t, const char*> named[] = {
        {0x202A, "1‹U+202A›2"}, {0x202B, "1‹U+202B›2"}, {0x202C, "1‹U+202C›2"},
        {0x202D, "1‹U+202D›2"}, {0x202E, "1‹U+202E›2"}, {0x2066, "1‹U+2066›2"},
        {0x2067, "1‹U+2067›2"}, {0x2068, "1‹U+2068›2"}, {0x2069, "1‹U+2069›2"}};
    for (const auto& [code, shown] : named) {
        const QString text = QString(u'1') + QChar(code) + u'2';
        EXPECT_EQ(withVisibleOverrides(text), QString::fromUtf8(shown));
    }
}

TEST(VisibleText, EverythingElseStays) {
    const QString text = QStringLiteral("Photoshop – フォト فوتوشوب 👍🏽");
    EXPECT_EQ(withVisibleOverrides(text), text);
}

}  // namespace
