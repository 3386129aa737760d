#include <sys/stat.h>

#include "tests/tools/mkinstaller/ProductFolder.h"

// Each row spoils one thing in the payload of a clean product. The mistake must be told by its code
// at its line.

namespace installer::test {

namespace {

const std::string mirror = "files/HD/";
const std::string support = mirror + "Library/Application Support/";
const std::string product = support + "Acme/Filters 2/";
const std::string plugIn = "files/PHOTOSHOP_PLUGINS/Acme/Filters 2.plugin/";
const std::string information = plugIn + "Contents/Info.plist";
const std::string program = plugIn + "Contents/MacOS/Filters 2";

std::string plist(const std::string& entries) {
    return "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>\n" + entries +
           "</dict></plist>\n";
}

std::string pair(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key>\n<string>" + value + "</string>\n";
}

/// A package of the product's own, complete.
Change package(std::string folder, std::string identifier = "com.acme.filters.more") {
    return inTurn(
        {writing(folder + "/Contents/Info.plist", plist(pair("CFBundleIdentifier", identifier) +
                                                        pair("CFBundleExecutable", "program"))),
         writing(folder + "/Contents/MacOS/program", "#!/bin/sh\n"),
         [folder](const ProductFolder& made) {
             made.setMode(folder + "/Contents/MacOS/program", 0755);
         }});
}

Change mode(std::string path, unsigned bits) {
    return [=](const ProductFolder& made) { made.setMode(path, bits); };
}

class PayloadMistakesRow : public testing::TestWithParam<Mistake> {};

TEST_P(PayloadMistakesRow, IsToldAtItsLine) {
    expectTold(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Folders, PayloadMistakesRow,
    testing::Values(
        Mistake{"FolderUnknown", "M070", writing("files/BRIDGE/Script.jsx", ""), "files/BRIDGE"},
        Mistake{"FileBesideTheFolders", "M070", writing("files/notes.txt", ""), "files/notes.txt"},
        Mistake{"FolderInSmallLetters", "M071", renaming("files/PHOTOSHOP", "files/Photoshop"),
                "files/Photoshop"},
        Mistake{"FileOutsideTheProducts", "M072", writing(mirror + "Applications/Read Me.txt", ""),
                mirror + "Applications/Read Me.txt"},
        Mistake{"FileDirectlyInTheCompanysFolder", "M072",
                writing(support + "Acme/Read Me.txt", ""), support + "Acme/Read Me.txt"},
        Mistake{"HiddenFile", "M073", writing("files/PHOTOSHOP/.settings", ""),
                "files/PHOTOSHOP/.settings"},
        Mistake{"HiddenFolderOfAProduct", "M073", writing(product + ".cache/a", ""),
                product + ".cache"},
        Mistake{"LinkForPhotoshop", "M074", linking("Scripts", "files/PHOTOSHOP/Presets/Old"),
                "files/PHOTOSHOP/Presets/Old"},
        Mistake{"FolderForUsers", "M078", writing(product + "User Presets/My First.preset", ""),
                product + "User Presets"},
        Mistake{"PackageInAFolderOfAProduct", "M079", package(product + "Helpers/Updater.app"),
                product + "Helpers/Updater.app"},
        Mistake{"FolderOfTheSystem", "M089", package(mirror + "usr/lib/Tool.app"),
                mirror + "usr/lib/Tool.app"},
        Mistake{"HomeOfSomebodyElse", "M089", package(mirror + "home/someone/Tool.app"),
                mirror + "home/someone/Tool.app"},
        Mistake{"PayloadMissing", "M090", removing("files"), "files"},
        Mistake{"PayloadEmpty", "M090",
                [](const ProductFolder& made) {
                    made.remove("files");
                    std::filesystem::create_directories(made.at("files/HD/Applications"));
                },
                "files"},
        Mistake{"CompanyMisspelledInThePayload", "M094",
                renaming(support + "Acme", support + "Acne"), support + "Acne"},
        Mistake{"LeftoverOfTheDesktop", "M095", writing("files/PHOTOSHOP/.DS_Store", ""),
                "files/PHOTOSHOP/.DS_Store"},
        Mistake{"LeftoverOfAnArchive", "M095", writing(plugIn + "Contents/._Info.plist", ""),
                plugIn + "Contents/._Info.plist"}),
    nameOfMistake);

INSTANTIATE_TEST_SUITE_P(
    Entries, PayloadMistakesRow,
    testing::Values(
        Mistake{"Fifo", "M075",
                [](const ProductFolder& made) {
                    ASSERT_EQ(::mkfifo(made.at(product + "pipe").c_str(), 0644), 0);
                },
                product + "pipe"},
        Mistake{"FifoForPhotoshop", "M075",
                [](const ProductFolder& made) {
                    ASSERT_EQ(::mkfifo(made.at("files/PHOTOSHOP/pipe").c_str(), 0644), 0);
                },
                "files/PHOTOSHOP/pipe"},
        Mistake{"LinkToAPlaceOfThisMachine", "M076", linking("/home/me/build/x", product + "x"),
                product + "x"},
        Mistake{"LinkToNowhere", "M077", linking("Readme.txt", product + "Start here"),
                product + "Start here"},
        Mistake{"LinkOutOfTheProduct", "M077", linking("../../../../../../../x", product + "x"),
                product + "x"},
        Mistake{"NamesThatDifferInLetterCase", "M085",
                inTurn({writing(product + "Curve.txt", ""), writing(product + "curve.txt", "")}),
                product + "curve.txt"},
        Mistake{"NameWithALineFeed", "M086", writing(product + "Read\nMe", ""),
                product + "Read\nMe"},
        Mistake{"NameInLatin1", "M086", writing(product + "Gr\xFCn.txt", ""),
                product + "Gr\xFCn.txt"},
        Mistake{"NameOfTooManyBytes", "M087", writing(product + std::string(200, 'x'), ""),
                product + std::string(200, 'x')},
        Mistake{"ProgramThatLostItsBits", "M088", writing(product + "start", "#!/bin/sh\n"),
                product + "start"},
        Mistake{"ElfThatLostItsBits", "M088",
                writing(plugIn + "Contents/Resources/tool",
                        "\x7F"
                        "ELF..."),
                plugIn + "Contents/Resources/tool"},
        Mistake{"FileThatNobodyMayRead", "M091", mode(product + "Read Me.txt", 0000),
                product + "Read Me.txt"},
        Mistake{"SetUserIdBit", "M092", mode(program, 04755), program},
        Mistake{"LeftoverOfTheSampleInAText", "M009",
                replacing("de.lproj/license.txt", "Filters 2: ", "Tonewright: "),
                "de.lproj/license.txt", "Tonewright"},
        Mistake{"LeftoverOfTheSampleInAnAddress", "M009",
                replacing("de.lproj/Localizable.strings", "www.acme.com/de/register",
                          "www.quarrytone.example/de/register"),
                "de.lproj/Localizable.strings", "quarrytone"},
        Mistake{"LeftoverOfTheSampleInAName", "M009", writing(product + "Tonewright.txt", ""),
                product + "Tonewright.txt"}),
    nameOfMistake);

INSTANTIATE_TEST_SUITE_P(
    Packages, PayloadMistakesRow,
    testing::Values(
        Mistake{"ExecutableMissing", "M080", removing(program), information,
                "<string>Filters 2</string>\n\t<key>CFBundlePackageType"},
        Mistake{"ExecutableOfAnotherName", "M080",
                renaming(program, plugIn + "Contents/MacOS/Filters 3"), information,
                "<string>Filters 2</string>\n\t<key>CFBundlePackageType"},
        Mistake{"ExecutableNotNamed", "M080",
                replacing(information, "CFBundleExecutable", "Executable"), information},
        Mistake{"ExecutableLostItsBits", "M081", mode(program, 0644), program},
        Mistake{"PropertyListMissing", "M082", removing(information), information},
        Mistake{"PropertyListBroken", "M082", replacing(information, "</dict>", "<dict>"),
                information, "</plist>"},
        Mistake{"PropertyListCutOff", "M082",
                writing(information, "<?xml version=\"1.0\"?>\n<plist>\n<dict>\n"), information,
                "<dict>"},
        Mistake{"EmptyPackage", "M082",
                [](const ProductFolder& made) {
                    std::filesystem::create_directories(made.at(mirror + "Applications/A.app"));
                },
                mirror + "Applications/A.app/Contents/Info.plist"},
        Mistake{"IdentifierWithoutDots", "M083",
                replacing(information, "com.acme.filters.plugin", "filters"), information,
                "<string>filters"},
        Mistake{"IdentifierThatIsAWebsite", "M083",
                replacing(information, "com.acme.filters.plugin", "www.acme.com"), information,
                "www.acme.com"},
        Mistake{"IdentifierMissing", "M083",
                replacing(information, "CFBundleIdentifier", "Identifier"), information},
        Mistake{"IdentifierOfSomebodyElse", "M084",
                package(mirror + "Applications/Tool.app", "org.gimp.gimp"),
                mirror + "Applications/Tool.app/Contents/Info.plist", "org.gimp"}),
    nameOfMistake);

TEST(PayloadMistakesTest, AreNoneInPackagesWhereTheyBelong) {
    const ProductFolder made;
    package(mirror + "Applications/Filters 2.app")(made);
    package(product + "Updater.app", "com.acme.filters.updater")(made);
    package(mirror + "usr/local/lib/Tool.app", "com.acme.filters.tool")(made);
    made.link("Filters 2", plugIn + "Contents/MacOS/Alias");
    made.write("files/LIGHTROOM/Modules/Filters 2.lrplugin/Info.lua", "return {}\n");
    EXPECT_EQ(printed(made.lint()), "");
}

}  // namespace

}  // namespace installer::test
