#include "foundation/rtf/codepages/CodePages.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/rtf/codepages/CodePageTables.h"
#include "foundation/values/Utf8.h"

namespace installer::rtf {

namespace {

constexpr int japaneseCodePage = 932;
constexpr int utf8CodePage = 65001;

constexpr auto codePagesOfCharacterSets = std::to_array<std::pair<int, int>>({
    {0, westernCodePage}, {2, symbolCodePage}, {77, 10000}, {128, japaneseCodePage},
    {129, 949},           {130, 1361},         {134, 936},  {136, 950},
    {161, 1253},          {162, 1254},         {163, 1258}, {177, 1255},
    {178, 1256},          {186, 1257},         {204, 1251}, {222, 874},
    {238, 1250},          {254, 437},          {255, 850},
});

bool isDoubleByte(int codePage) {
    constexpr std::array codePages{japaneseCodePage, 936, 949, 950, 1361};
    return std::ranges::find(codePages, codePage) != codePages.end();
}

bool isLeadByte(int codePage, unsigned char byte) {
    if (codePage != japaneseCodePage) return byte >= 0x81 && byte <= 0xFE;
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

std::size_t utf8SequenceLength(unsigned char firstByte) {
    if (firstByte >= 0xC2 && firstByte <= 0xDF) return 2;
    if (firstByte >= 0xE0 && firstByte <= 0xEF) return 3;
    if (firstByte >= 0xF0 && firstByte <= 0xF4) return 4;
    return 1;
}

char32_t decodedUpperByte(int codePage, unsigned char byte) {
    constexpr unsigned char firstKana = 0xA1;
    constexpr unsigned char lastKana = 0xDF;
    if (codePage == japaneseCodePage && byte >= firstKana && byte <= lastKana) {
        return U'\uFF61' + static_cast<char32_t>(byte - firstKana);
    }
    if (codePage == symbolCodePage) {
        if (byte == 0xA7) return U'\u25AA';
        if (byte == 0xB7) return U'\u2022';
        if (byte == 0xD8) return U'\u27A2';
        if (byte == 0xFC) return U'\u2713';
        return replacementCharacter;
    }
    const auto upperHalf = upperHalfOfCodePage(codePage);
    return upperHalf ? (*upperHalf)[byte - 0x80U] : replacementCharacter;
}

/// Each lead byte covers two rows of 94 cells; byte 7F is left out among the trail bytes.
char32_t decodedJapanese(unsigned char lead, unsigned char trail) {
    const unsigned pair = lead <= 0x9F ? lead - 0x81U : lead - 0xC1U;
    const unsigned cell = trail < 0x7F ? trail - 0x40U : trail - 0x41U;
    return japaneseCharacter(pair * 2 + cell / 94, cell % 94).value_or(replacementCharacter);
}

}  // namespace

bool isKnownCodePage(int codePage) {
    return isDoubleByte(codePage) || codePage == utf8CodePage ||
           upperHalfOfCodePage(codePage).has_value();
}

std::optional<int> codePageOfCharacterSet(int characterSet) {
    const auto* const found =
        std::ranges::find(codePagesOfCharacterSets, characterSet, &std::pair<int, int>::first);
    if (found == codePagesOfCharacterSets.end()) return std::nullopt;
    return found->second;
}

std::size_t sequenceLength(int codePage, unsigned char firstByte) {
    if (codePage == utf8CodePage) return utf8SequenceLength(firstByte);
    return isDoubleByte(codePage) && isLeadByte(codePage, firstByte) ? 2 : 1;
}

bool canContinueSequence(int codePage, unsigned char byte) {
    if (codePage == utf8CodePage) return byte >= 0x80 && byte <= 0xBF;
    if (codePage == japaneseCodePage) return byte >= 0x40 && byte != 0x7F && byte <= 0xFC;
    return byte >= 0x31 && byte != 0x7F && byte <= 0xFE;
}

char32_t decodedSequence(int codePage, std::string_view bytes) {
    const auto first = static_cast<unsigned char>(bytes.front());
    if (bytes.size() == 1 && first < 0x80) return first;
    if (codePage == utf8CodePage) {
        const Utf8Character character = utf8CharacterAt(bytes, 0);
        const bool isWhole = character.codePoint && character.length == bytes.size();
        return isWhole ? *character.codePoint : replacementCharacter;
    }
    if (bytes.size() == 1) return decodedUpperByte(codePage, first);
    if (codePage != japaneseCodePage) return replacementCharacter;
    return decodedJapanese(first, static_cast<unsigned char>(bytes[1]));
}

}  // namespace installer::rtf
