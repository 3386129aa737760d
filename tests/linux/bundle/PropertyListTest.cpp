#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "linux/bundle/PropertyList.h"

namespace installer::test {
namespace {

std::string xml(const std::string& dictionary) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">" +
           dictionary + "</plist>\n";
}

/// A binary property list of these objects, the first one being the root.
std::string binary(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    const auto add = [](std::string& text, std::uint64_t number, int size) {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            text += static_cast<char>(number >> shift & 0xFF);
    };
    for (const auto& object : objects) {
        add(offsets, bytes.size(), 4);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    bytes += offsets + std::string(6, '\0') + '\4' + '\4';
    add(bytes, objects.size(), 8);
    add(bytes, 0, 8);
    add(bytes, table, 8);
    return bytes;
}

std::string reference(std::uint32_t number) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

std::string shortText(const std::string& text) {
    return static_cast<char>(0x50 | text.size()) + text;
}

/// A dictionary with one key, whose place is 1 and whose value's is 2, and these further objects.
std::string binaryWith(std::vector<std::string> objects) {
    objects.insert(objects.begin(), {"\xD1" + reference(1) + reference(2), shortText("key")});
    return binary(objects);
}

TEST(PropertyList, ReadsValuesOfEachTypeFromXml) {
    const auto list = PropertyList::parse(
        xml("<dict><key>text</key><string>Grüße &amp; mehr</string><key>number</key>"
            "<integer>-2</integer><key>real</key><real>1.5</real><key>yes</key><true/>"
            "<key>no</key><false/><key>data</key><data>AP8=</data>"
            "<key>list</key><array><string>x</string></array></dict>"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->value("text"), PreferenceValue("Grüße & mehr"));
    EXPECT_EQ(list->value("number"), PreferenceValue(std::int64_t{-2}));
    EXPECT_EQ(list->value("real"), PreferenceValue(1.5));
    EXPECT_EQ(list->value("yes"), PreferenceValue(true));
    EXPECT_EQ(list->value("no"), PreferenceValue(false));
    EXPECT_EQ(list->value("list"), std::nullopt);
    EXPECT_EQ(list->value("missing"), std::nullopt);
    EXPECT_EQ(list->value("data"), std::nullopt);
    EXPECT_EQ(list->data("data"), std::string("\0\xFF", 2));
    EXPECT_EQ(list->data("text"), std::nullopt);
}

TEST(PropertyList, ReadsTheBinaryForm) {
    const auto list = PropertyList::parse(binaryWith({shortText("value")}));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->value("key"), PreferenceValue("value"));
}

void expectRoundTrip(PropertyList list) {
    list.set("text", std::string("a < b & \"c\"\n  日本語 "));
    list.set("empty", std::string());
    list.set("number", std::int64_t{-9'000'000'000});
    list.set("real", 0.25);
    list.set("flag", true);
    list.setData("data", std::string_view("\0\x01\xFF", 3));
    list.set("gone", std::int64_t{1});
    list.remove("gone");
    const auto bytes = list.serialized();
    ASSERT_TRUE(bytes);
    const auto read = PropertyList::parse(*bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->value("text"), PreferenceValue("a < b & \"c\"\n  日本語 "));
    EXPECT_EQ(read->value("empty"), PreferenceValue(std::string()));
    EXPECT_EQ(read->value("number"), PreferenceValue(std::int64_t{-9'000'000'000}));
    EXPECT_EQ(read->value("real"), PreferenceValue(0.25));
    EXPECT_EQ(read->value("flag"), PreferenceValue(true));
    EXPECT_EQ(read->data("data"), std::string("\0\x01\xFF", 3));
    EXPECT_EQ(read->value("gone"), std::nullopt);
}

TEST(PropertyList, WritesXmlThatReadsTheSame) {
    expectRoundTrip(PropertyList());
    EXPECT_TRUE(PropertyList().serialized().value_or("").starts_with("<?xml"));
}

TEST(PropertyList, WritesBackTheBinaryFormThatItRead) {
    auto list = PropertyList::parse(binaryWith({shortText("value")}));
    ASSERT_TRUE(list);
    EXPECT_TRUE(list->serialized().value_or("").starts_with("bplist00"));
    expectRoundTrip(std::move(*list));
}

struct BrokenRow {
    const char* name;
    std::string bytes;
};

class PropertyListThatIsBroken : public testing::TestWithParam<BrokenRow> {};

TEST_P(PropertyListThatIsBroken, IsNotParsed) {
    EXPECT_FALSE(PropertyList::parse(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(
    Files, PropertyListThatIsBroken,
    testing::Values(
        BrokenRow{"Empty", ""}, BrokenRow{"OneByte", "<"}, BrokenRow{"Text", "just a text"},
        BrokenRow{"RootIsAText", xml("<string>x</string>")},
        BrokenRow{"RootIsAList", xml("<array/>")},
        BrokenRow{"Truncated", xml("<dict><key>a</key><string>b</string></dict>").substr(0, 200)},
        BrokenRow{"UnknownEntity",
                  "<!DOCTYPE plist [<!ENTITY file SYSTEM \"file:///etc/passwd\">]>"
                  "<plist><dict><key>a</key><string>&file;</string></dict></plist>"},
        BrokenRow{"Nul",
                  xml("<dict><key>a</key><string>b" + std::string(1, '\0') + "c</string></dict>")},
        BrokenRow{"Json", "{\"a\": 1}"}, BrokenRow{"BinaryMarkOnly", "bplist00"},
        BrokenRow{"BinaryGarbage", "bplist00" + std::string(100, '\xFF')},
        BrokenRow{"BinaryZeros", "bplist00" + std::string(100, '\0')},
        BrokenRow{"BinaryTruncated", binaryWith({shortText("value")}).substr(0, 20)},
        BrokenRow{"BinaryThatHoldsItself", binaryWith({"\xA1" + reference(2)})}),
    [](const auto& row) { return row.param.name; });

TEST(PropertyList, DeepNestingIsRefusedInXml) {
    std::string nested;
    for (int depth = 0; depth < 200'000; ++depth) nested += "<array>";
    EXPECT_FALSE(PropertyList::parse(xml("<dict><key>a</key>" + nested)));
    std::string closed = nested;
    for (int depth = 0; depth < 200'000; ++depth) closed += "</array>";
    EXPECT_FALSE(PropertyList::parse(xml("<dict><key>a</key>" + closed + "</dict>")));
}

TEST(PropertyList, AsDeepAsIsAllowedIsReadSafely) {
    std::string nested = "<dict><key>b</key><string>c</string><key>a</key>";
    for (int depth = 0; depth < 4'990; ++depth) nested += "<array>";
    for (int depth = 0; depth < 4'990; ++depth) nested += "</array>";
    const auto list = PropertyList::parse(xml(nested + "</dict>"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->value("b"), PreferenceValue("c"));
    EXPECT_TRUE(list->serialized());
}

TEST(PropertyList, DeepNestingIsRefusedInBinary) {
    std::vector<std::string> objects;
    for (std::uint32_t depth = 0; depth < 200'000; ++depth)
        objects.push_back("\xA1" + reference(depth + 3));
    objects.push_back(shortText("end"));
    EXPECT_FALSE(PropertyList::parse(binaryWith(objects)));
}

TEST(PropertyList, ABinaryListThatMultipliesItselfIsRefused) {
    // Each level refers ten times to the next one: ten thousand million values in 600 bytes.
    std::vector<std::string> objects;
    for (std::uint32_t level = 0; level < 10; ++level) {
        std::string object = "\xAA";
        for (int count = 0; count < 10; ++count) object += reference(level + 3);
        objects.push_back(object);
    }
    objects.push_back(shortText("end"));
    EXPECT_FALSE(PropertyList::parse(binaryWith(objects)));
}

/// The same list with numbers of nine bytes in its trailer's table, which the reader takes too.
std::string withWideNumbers(const std::vector<std::string>& objects) {
    std::string bytes = "bplist00";
    std::string offsets;
    const auto add = [](std::string& text, std::uint64_t number, int size) {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            text += static_cast<char>(shift > 56 ? 0 : number >> shift & 0xFF);
    };
    for (const auto& object : objects) {
        add(offsets, bytes.size(), 9);
        bytes += object;
    }
    const std::size_t table = bytes.size();
    bytes += offsets + std::string(6, '\0') + '\x09' + '\x09';
    add(bytes, objects.size(), 8);
    add(bytes, 0, 8);
    add(bytes, table, 8);
    return bytes;
}

std::string wideReference(std::uint32_t number) {
    return std::string(5, '\0') + reference(number);
}

TEST(PropertyList, NumbersWiderThanAnyHideNothing) {
    const std::string key = "\xD1" + wideReference(1) + wideReference(2);
    const auto list =
        PropertyList::parse(withWideNumbers({key, shortText("key"), shortText("value")}));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->value("key"), PreferenceValue("value"));

    // A million values.
    std::vector<std::string> objects = {key, shortText("key")};
    for (std::uint32_t level = 0; level < 6; ++level) {
        std::string object = "\xAA";
        for (int count = 0; count < 10; ++count) object += wideReference(level + 3);
        objects.push_back(object);
    }
    objects.push_back(shortText("end"));
    EXPECT_FALSE(PropertyList::parse(withWideNumbers(objects)));
}

TEST(PropertyList, ALengthWiderThanAnyHidesNothing) {
    // The lengths of these lists take sixteen bytes instead of one.
    std::vector<std::string> objects;
    for (std::uint32_t level = 0; level < 6; ++level) {
        std::string object = "\xAF\x14" + std::string(15, '\0') + '\x0A';
        for (int count = 0; count < 10; ++count) object += reference(level + 3);
        objects.push_back(object);
    }
    objects.push_back(shortText("end"));
    EXPECT_FALSE(PropertyList::parse(binaryWith(objects)));
}

TEST(PropertyList, ABinaryListThatRepeatsALongTextIsRefused) {
    // A megabyte that is referred to a thousand times.
    std::string list = "\xAF\x12" + reference(1'000);
    for (int count = 0; count < 1'000; ++count) list += reference(3);
    for (const char* kind : {"\x4F\x12", "\x5F\x12", "\x6F\x12"}) {
        const std::string text = kind + reference(1 << 19) + std::string(1 << 20, 'x');
        EXPECT_FALSE(PropertyList::parse(binaryWith({list, text})));
    }
    EXPECT_TRUE(PropertyList::parse(
        binaryWith({list, "\x5F\x12" + reference(100) + std::string(100, 'x')})));
}

TEST(PropertyList, ABinaryListWithANulInATextIsRefused) {
    EXPECT_TRUE(PropertyList::parse(binaryWith({std::string("\x63\x01\0\0a\0b", 7)})));
    EXPECT_FALSE(PropertyList::parse(binaryWith({std::string("\x63\0a\0\0\0b", 7)})));
    EXPECT_FALSE(PropertyList::parse(binaryWith({shortText(std::string("a\0b", 3))})));
}

TEST(PropertyList, ABinaryListWithATextThatIsNotUtf8IsRefused) {
    EXPECT_TRUE(
        PropertyList::parse(binaryWith({shortText("Gr\xC3\xBC\xC3\x9F"
                                                  "e")})));
    EXPECT_FALSE(
        PropertyList::parse(binaryWith({shortText("Gr\xFC\xDF"
                                                  "e")})));
    EXPECT_FALSE(PropertyList::parse(
        binary({"\xD1" + reference(1) + reference(2), shortText("\xB7ist"), shortText("value")})));
}

TEST(PropertyList, ATextOfEntitiesThatTakesForeverIsRefused) {
    std::string text;
    for (int count = 0; count < 800'000; ++count) text += "&amp;";
    EXPECT_FALSE(
        PropertyList::parse(xml("<dict><key>a</key><string>" + text + "</string></dict>")));
    const auto list = PropertyList::parse(
        xml("<dict><key>a</key><string>" + text.substr(0, 5'000) + "</string></dict>"));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->value("a"), PreferenceValue(std::string(1'000, '&')));
}

TEST(PropertyList, ADictionaryOfKeysThatTakesForeverIsRefused) {
    std::string keys;
    for (int count = 0; count < 20'001; ++count)
        keys += "<key>" + std::to_string(count) + "</key><true/>";
    EXPECT_FALSE(PropertyList::parse(xml("<dict>" + keys + "</dict>")));
}

TEST(PropertyList, EveryTruncationAndEveryDamagedByteIsSurvived) {
    const std::string whole = binaryWith(
        {"\xA2" + reference(3) + reference(4), shortText("value"), std::string("\x10\x02", 2)});
    ASSERT_TRUE(PropertyList::parse(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        static_cast<void>(PropertyList::parse(std::string_view(whole).substr(0, length)));
    for (std::size_t place = 8; place < whole.size(); ++place) {
        for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
            std::string damaged = whole;
            damaged[place] = value;
            const auto list = PropertyList::parse(damaged);
            if (list) static_cast<void>(list->value("key"));
        }
    }
}

}  // namespace
}  // namespace installer::test
