#include "tests/tools/mkinstaller/ProductFolder.h"

// Each row spoils one thing in a clean product. The mistake must be told by its code at its line.

namespace installer::test {

namespace {

constexpr const char* german = "de.lproj/Localizable.strings";
constexpr const char* germanNames = "de.lproj/installer.strings";
constexpr const char* english = "en.lproj/Localizable.strings";

class TextMistakesRow : public testing::TestWithParam<Mistake> {};

TEST_P(TextMistakesRow, IsToldAtItsLine) {
    expectTold(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Tables, TextMistakesRow,
    testing::Values(
        Mistake{"TableMissing", "M010", removing(german), german},
        Mistake{"NamesMissing", "M010", removing(germanNames), germanNames},
        Mistake{"TableIsAFolder", "M010",
                [](const ProductFolder& product) {
                    product.remove(german);
                    product.write(std::string(german) + "/file", "");
                },
                german},
        Mistake{"TableInLatin1", "M011",
                replacing(german, "Zurück",
                          "Zur\xFC"
                          "ck"),
                german, "\"go_back\""},
        Mistake{"QuoteMissing",
                "M012",
                replacing(german, "\"Weiter\";", "\"Weiter;"),
                german,
                "\"continue\"",
                {"M019"}},
        Mistake{"EqualsSignMissing",
                "M013",
                replacing(german, "\"continue\" =", "\"continue\""),
                german,
                "\"continue\"",
                {"M019"}},
        Mistake{"ValueMissing",
                "M013",
                replacing(german, "\"continue\" = \"Weiter\";", "\"continue\" = ;"),
                german,
                "\"continue\"",
                {"M019"}},
        Mistake{"SemicolonMissing", "M014", replacing(german, "\"Weiter\";", "\"Weiter\""), german,
                "\"Weiter\""},
        Mistake{"CommentWithoutEnd", "M015", appending(german, "/* To be continued\n"), german,
                "/* To be continued"},
        Mistake{"EscapeWithoutCharacter", "M016",
                replacing(german, "\"Weiter\"", "\"Weiter\\U0000\""), german, "Weiter"},
        Mistake{"EscapeUnknown", "M017", replacing(german, "\"Weiter\"", "\"Weit\\er\""), german,
                "Weit\\er"},
        Mistake{"KeyTwice", "M018", appending(german, "\"quit\" = \"Schluss\";\n"), german,
                "Schluss"},
        Mistake{"KeyMissing", "M019", replacing(german, "\"continue\" = \"Weiter\";\n", ""), german,
                "\"failure_picture_name\""},
        Mistake{"KeyOfNamesMissing",
                "M019",
                replacing(germanNames, "\"app_plist\"", "\"ap_plist\""),
                germanNames,
                "ap_plist",
                {"M020"}},
        Mistake{"KeyUnknown", "M020", appending(german, "\"greeting\" = \"Hallo\";\n"), german,
                "greeting"},
        Mistake{
            "PlaceholderLost", "M021",
            replacing(german, "\"main_wnd_title_fmt\" = \"%@", "\"main_wnd_title_fmt\" = \"Mein"),
            german, "main_wnd_title_fmt"},
        Mistake{"PlaceholderTwice", "M021",
                replacing(german, "\"copy_files_title\" = \"", "\"copy_files_title\" = \"%@: "),
                german, "\"copy_files_title\""},
        Mistake{"PercentSignAlone", "M022", replacing(german, "\"Weiter\"", "\"100 % weiter\""),
                german, "100 %"},
        Mistake{"PlaceholderThatStaysEmpty", "M022",
                [](const ProductFolder& product) {
                    for (const std::string language : {"en", "de", "ja"}) {
                        product.replace(language + ".lproj/Localizable.strings", "\"done\" = \"",
                                        "\"done\" = \"%@: ");
                    }
                },
                english, "\"done\""},
        Mistake{"TextNotTranslated", "M023", replacing(german, "\"Weiter\"", "\"Continue\""),
                german, "\"continue\""},
        Mistake{"LongTextNotTranslated", "M023",
                [](const ProductFolder& product) {
                    const std::string text = "\"done\" = \"The installation has ended.\";";
                    const std::string table = product.read("ja.lproj/Localizable.strings");
                    const auto start = table.find("\"done\"");
                    product.replace("ja.lproj/Localizable.strings",
                                    table.substr(start, table.find('\n', start) - start), text);
                },
                "ja.lproj/Localizable.strings", "\"done\""},
        Mistake{"TextEmpty", "M024", replacing(german, "\"Weiter\"", "\"\""), german,
                "\"continue\""},
        Mistake{"TextOfBlanks", "M024", replacing(german, "\"Weiter\"", "\"  \""), german,
                "\"continue\""},
        Mistake{"BlankBeforeTheNameMissing", "M025",
                replacing(english, "\"Installing \"", "\"Installing\""), english,
                "\"installing_file\""},
        Mistake{"AddressWithoutScheme", "M026",
                replacing(german, "https://www.acme.com/de/register", "www.acme.com/de/register"),
                german, "register_url"},
        Mistake{
            "AddressWithABlank", "M026",
            replacing(german, "https://www.acme.com/de/help", "https://www.acme.com/de/my help"),
            german, "help_url_format"}),
    nameOfMistake);

INSTANTIATE_TEST_SUITE_P(
    Names, TextMistakesRow,
    testing::Values(
        Mistake{"CompanyMissing", "M030",
                replacing(germanNames, "\"company_name\" = \"Acme\";", ""), germanNames,
                "app_plist"},
        Mistake{"ProductEmpty", "M030", replacing(germanNames, "\"Filters 2\"", "\"\""),
                germanNames, "product_name"},
        Mistake{"CompanyTranslated", "M031", replacing(germanNames, "\"Acme\"", "\"Akme\""),
                germanNames, "company_name"},
        Mistake{"ProductTranslated", "M031",
                replacing(germanNames, "\"Filters 2\"", "\"Filter 2\""), germanNames,
                "product_name"},
        Mistake{"ProductWithASlash",
                "M032",
                replacing(germanNames, "\"Filters 2\"", "\"Filters/2\""),
                germanNames,
                "product_name",
                {"M031"}},
        Mistake{"ProductWithALineEnd",
                "M033",
                replacing(germanNames, "\"Filters 2\"", "\"Filters\\n2\""),
                germanNames,
                "product_name",
                {"M031"}},
        Mistake{"CompanyIsTheFolderAbove",
                "M034",
                replacing(germanNames, "\"Acme\"", "\"..\""),
                germanNames,
                "company_name",
                {"M031"}},
        Mistake{"CompanyIsTheFolderItself",
                "M034",
                replacing(germanNames, "\"Acme\"", "\".\""),
                germanNames,
                "company_name",
                {"M031"}},
        Mistake{"CompanyTooLong",
                "M035",
                replacing(germanNames, "\"Acme\"", "\"" + std::string(256, 'a') + "\""),
                germanNames,
                "company_name",
                {"M031"}},
        Mistake{"ProductTooLongForItsFiles",
                "M035",
                replacing(germanNames, "\"Filters 2\"", "\"" + std::string(245, 'f') + "\""),
                germanNames,
                "product_name",
                {"M031"}},
        Mistake{"CompanyHidden",
                "M036",
                replacing(germanNames, "\"Acme\"", "\".Acme\""),
                germanNames,
                "company_name",
                {"M031"}},
        Mistake{"ProductEndsInABlank",
                "M036",
                replacing(germanNames, "\"Filters 2\"", "\"Filters 2 \""),
                germanNames,
                "product_name",
                {"M031"}},
        Mistake{"SettingsDomainWithoutDots", "M037",
                replacing(germanNames, "\"com.acme.filters\"", "\"filters\""), germanNames,
                "app_plist"},
        Mistake{"CompanyOfSomebodyElse",
                "M038",
                replacing(germanNames, "\"Acme\"", "\"Adobe\""),
                germanNames,
                "company_name",
                {"M031"}}),
    nameOfMistake);

INSTANTIATE_TEST_SUITE_P(
    Pages, TextMistakesRow,
    testing::Values(
        Mistake{"PageMissing", "M040", removing("de.lproj/proceed.rtf"), "de.lproj/proceed.rtf"},
        Mistake{"LicenceMissing", "M040", removing("ja.lproj/license.txt"), "ja.lproj/license.txt"},
        Mistake{"PageIsPlainText", "M041", writing("de.lproj/register.rtf", "Fertig.\n"),
                "de.lproj/register.rtf"},
        Mistake{"PageEndsTooEarly", "M041",
                writing("de.lproj/register.rtf", "{\\rtf1\\ansi\n{\\b Fertig.\n}\n"),
                "de.lproj/register.rtf", "}"},
        Mistake{"PageIsAFolder", "M041",
                [](const ProductFolder& product) {
                    product.remove("de.lproj/register.rtf");
                    product.write("de.lproj/register.rtf/TXT.rtf", "{\\rtf1}");
                },
                "de.lproj/register.rtf"},
        Mistake{
            "LicenceInLatin1", "M042",
            replacing("de.lproj/license.txt", "benutzen, und es für", "benutzen, und es f\xFCr"),
            "de.lproj/license.txt", "benutzen"},
        Mistake{"LicenceInUtf16", "M042",
                writing("de.lproj/license.txt", std::string("\xFF\xFEL\0i\0", 6)),
                "de.lproj/license.txt"},
        Mistake{"LicenceInBritishSpelling",
                "M043",
                renaming("de.lproj/license.txt", "de.lproj/licence.txt"),
                "de.lproj/licence.txt",
                "",
                {"M040"}},
        Mistake{"LicenceAsRtf", "M043", writing("de.lproj/license.rtf", "{\\rtf1 Lizenz}"),
                "de.lproj/license.rtf"},
        Mistake{"PageInCapitals",
                "M043",
                renaming("de.lproj/register.rtf", "de.lproj/Register.RTF"),
                "de.lproj/Register.RTF",
                "",
                {"M040"}},
        Mistake{"PageTooLarge", "M044",
                [](const ProductFolder& product) {
                    std::filesystem::resize_file(product.at("de.lproj/register.rtf"),
                                                 (std::uintmax_t{16} << 20U) + 1);
                },
                "de.lproj/register.rtf"},
        Mistake{"LicenceLongerThanTheWindowShows", "M044",
                writing("de.lproj/license.txt", "Lizenz\n" + std::string(512U << 10U, 'x')),
                "de.lproj/license.txt", "xxx"},
        Mistake{"LastPageLongerThanTheWindowShows", "M044",
                writing("de.lproj/register.rtf",
                        "{\\rtf1 Fertig. " + std::string(512U << 10U, 'x') + "}"),
                "de.lproj/register.rtf"},
        Mistake{"MarkOfTheHostLost", "M045",
                writing("de.lproj/host_running.rtf", "{\\rtf1 Bitte beenden.}"),
                "de.lproj/host_running.rtf"},
        Mistake{"MarkUnknown", "M046",
                replacing("de.lproj/proceed.rtf", "%PRODUCTNAME%", "%PRODUCTNAME% %VERSION%"),
                "de.lproj/proceed.rtf", "%VERSION%"},
        Mistake{"PageEmpty", "M047", writing("de.lproj/register.rtf", "{\\rtf1\\ansi }"),
                "de.lproj/register.rtf"},
        Mistake{"PageOfNoBytes", "M047", writing("de.lproj/register.rtf", ""),
                "de.lproj/register.rtf"},
        Mistake{"LicenceEmpty", "M047", writing("de.lproj/license.txt", "\n \n"),
                "de.lproj/license.txt"},
        Mistake{"TextBehindThePagesEnd", "M048",
                appending("de.lproj/register.rtf", "\n\\par Noch etwas.}\n"),
                "de.lproj/register.rtf", "Noch etwas"},
        Mistake{"CharactersOfAnUnknownCodePage", "M049",
                writing("de.lproj/register.rtf",
                        "{\\rtf1\\ansi\\ansicpg949{\\fonttbl{\\f0\\fcharset129 Batang;}}\\f0 "
                        "\\'b0\\'a1}"),
                "de.lproj/register.rtf"}),
    nameOfMistake);

INSTANTIATE_TEST_SUITE_P(
    Folder, TextMistakesRow,
    testing::Values(
        Mistake{"NoLanguageAtAll",
                "M001",
                [](const ProductFolder& product) {
                    for (const char* folder : {"en.lproj", "de.lproj", "ja.lproj"}) {
                        product.remove(folder);
                    }
                },
                "",
                "",
                {"M072"}},
        Mistake{"LanguageByItsWholeName", "M002", renaming("de.lproj", "german.lproj"),
                "german.lproj"},
        Mistake{"LanguageFolderInCapitals", "M002", renaming("de.lproj", "de.LPROJ"), "de.LPROJ"},
        Mistake{"NoEnglish", "M003", removing("en.lproj"), ""},
        Mistake{"PropertyListMissing", "M004", removing("Info.plist"), "Info.plist"},
        Mistake{"PropertyListBroken", "M004", replacing("Info.plist", "</dict>", "</dic>"),
                "Info.plist", "</dic>"},
        Mistake{"AnotherExecutable", "M004",
                replacing("Info.plist", "<string>Installer</string>", "<string>Setup</string>"),
                "Info.plist", "<string>Setup"},
        Mistake{"VersionOfWords", "M005",
                replacing("Info.plist", "<string>1.0.0</string>", "<string>1.0 beta</string>"),
                "Info.plist", "1.0 beta"},
        Mistake{"VersionMissing", "M005",
                replacing("Info.plist", "<key>CFBundleVersion</key>", "<key>Version</key>"),
                "Info.plist"},
        Mistake{"IdentifierWithABlank", "M006",
                replacing("Info.plist", "com.acme.filters", "com.acme.my filters"), "Info.plist",
                "my filters"},
        Mistake{"IdentifierOfSomebodyElse", "M006",
                replacing("Info.plist", "com.acme.filters", "com.adobe.photoshop"), "Info.plist",
                "com.adobe"},
        Mistake{"FileThatNobodyReads", "M007", writing("de.lproj/notes.txt", "Notizen"),
                "de.lproj/notes.txt"},
        Mistake{"PictureInAnotherLetterCase", "M043", renaming("AppIcon.png", "appicon.png"),
                "appicon.png"},
        Mistake{"FolderOfSharedSupportUnknown", "M093",
                writing("SharedSupport/Plugins/Old.plugin", ""), "SharedSupport/Plugins"}),
    nameOfMistake);

}  // namespace

}  // namespace installer::test
