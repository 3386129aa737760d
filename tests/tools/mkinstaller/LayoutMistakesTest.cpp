#include "tests/tools/mkinstaller/ProductFolder.h"
#include "tools/mkinstaller/sources/Folders.h"

// Each row spoils one thing in a layout or a picture of the product's own. The mistake must be told
// by its code at its line.

namespace installer::test {

namespace {

constexpr const char* mainWindow = "MainWindow.ui";
constexpr const char* customInstall = "CustomInstall.ui";
constexpr const char* stepRow = "Step Indicator.ui";

std::string kitFile(const std::string& name) {
    return contentsOf(kitOfBuild().resources() + "/" + name).value();
}

/// The kit's layout as the product's own, with one text replaced.
Change layout(std::string name, std::string text, std::string by) {
    return [=](const ProductFolder& product) {
        product.write(name, kitFile(name));
        product.replace(name, text, by);
    };
}

/// Adds a line to the first place of that widget.
Change layoutWith(std::string name, std::string widget, std::string addition) {
    return [=](const ProductFolder& product) {
        product.write(name, kitFile(name));
        const std::string contents = product.read(name);
        const auto place = contents.find("name=\"" + widget + "\">");
        ASSERT_NE(place, std::string::npos) << widget;
        const auto end = contents.find('\n', place);
        product.write(name,
                      contents.substr(0, end + 1) + addition + "\n" + contents.substr(end + 1));
    };
}

std::string dynamicProperty(const std::string& name, const std::string& value) {
    return "<property name=\"" + name + "\" stdset=\"0\"><string>" + value + "</string></property>";
}

/// A picture of the kit's, with one byte changed.
std::string damaged(const std::string& name) {
    std::string bytes = kitFile(name);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x55);
    return bytes;
}

/// Sixteen dots wide and high.
std::string smallPicture() {
    constexpr unsigned char bytes[] = {
        0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0x00, 0x00, 0x00, 0x0D, 0x49, 0x48,
        0x44, 0x52, 0x00, 0x00, 0x00, 0x10, 0x00, 0x00, 0x00, 0x10, 0x01, 0x00, 0x00, 0x00,
        0x00, 0x37, 0x88, 0xC2, 0xCC, 0x00, 0x00, 0x00, 0x0C, 0x49, 0x44, 0x41, 0x54, 0x78,
        0xDA, 0x63, 0x60, 0x20, 0x0D, 0x00, 0x00, 0x00, 0x30, 0x00, 0x01, 0x28, 0x74, 0x49,
        0x7D, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4E, 0x44, 0xAE, 0x42, 0x60, 0x82};
    return {reinterpret_cast<const char*>(bytes), sizeof bytes};
}

class LayoutMistakesRow : public testing::TestWithParam<Mistake> {};

TEST_P(LayoutMistakesRow, IsToldAtItsLine) {
    expectTold(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, LayoutMistakesRow,
    testing::Values(
        Mistake{"TagMisspelled", "M050", layout(mainWindow, "</widget>", "</wiget>"), mainWindow,
                "</wiget>"},
        Mistake{"FileCutOff", "M050", writing(mainWindow, "<ui>\n<widget>\n"), mainWindow,
                "<widget>"},
        Mistake{"PropertyMisspelled", "M051",
                layout(mainWindow, "\"checkedBinding\"", "\"chekcedBinding\""), mainWindow,
                "chekcedBinding"},
        Mistake{"PropertyUnknown", "M051",
                layoutWith(mainWindow, "forwardButton", dynamicProperty("sparkle", "yes")),
                mainWindow, "sparkle"},
        Mistake{"ActionMisspelled", "M052", layout(mainWindow, ">nextView<", ">nextVeiw<"),
                mainWindow, "nextVeiw"},
        Mistake{"ActionOfAnotherWindow", "M052",
                layout(customInstall, ">browseButtonPressed<", ">nextView<"), customInstall,
                ">nextView<"},
        Mistake{"TextKeyMisspelled", "M053", layout(mainWindow, ">open_log<", ">opne_log<"),
                mainWindow, "opne_log"},
        Mistake{"AccessibleNameKeyUnknown", "M053",
                layout(mainWindow, ">progress_name<", ">progress_bar_name<"), mainWindow,
                "progress_bar_name"},
        Mistake{
            "TextInOneLanguageOnly", "M053",
            inTurn({layout(mainWindow, ">open_log<", ">show_log<"),
                    appending("en.lproj/Localizable.strings", "\"show_log\" = \"Show Log\";\n")}),
            mainWindow, "show_log"},
        Mistake{"PropertyOfTheInstallerMisspelled", "M054",
                layout(mainWindow, ">goForwardText<", ">goForwardTxt<"), mainWindow,
                "goForwardTxt"},
        Mistake{"PropertyOfAnotherWindow", "M054",
                layout(customInstall, ">customPath<", ">windowTitle<"), customInstall,
                ">windowTitle<"},
        Mistake{"ForwardButtonMissing", "M055",
                layout(mainWindow, "name=\"forwardButton\"", "name=\"nextButton\""), mainWindow},
        Mistake{"PlaceOfThePagesMissing", "M055",
                layout(mainWindow, "name=\"dynamicView\"", "name=\"pages\""), mainWindow},
        Mistake{"CustomScreenMissing", "M055",
                layout(customInstall, "name=\"customInstallView\"", "name=\"screen\""),
                customInstall},
        Mistake{"ListOfHostsMissing", "M056",
                layout(mainWindow, "class=\"QListWidget\" name=\"foundHostsController\"",
                       "class=\"QListWidget\" name=\"hosts\""),
                mainWindow},
        Mistake{"LabelOfTheStepMissing", "M056", layout(stepRow, "name=\"label\"", "name=\"text\""),
                stepRow},
        Mistake{"ClassUnknown", "M057",
                layout(mainWindow, "class=\"QProgressBar\"", "class=\"QFancyBar\""), mainWindow,
                "QFancyBar"},
        Mistake{"NoWidgetAtAll",
                "M057",
                writing(stepRow, "<ui version=\"4.0\">\n</ui>\n"),
                stepRow,
                "",
                {"M056"}},
        Mistake{"RowsInALabel",
                "M058",
                layoutWith(stepRow, "indicator", dynamicProperty("rowsBinding", "")),
                stepRow,
                "rowsBinding",
                {"M054"}},
        Mistake{"ActionOfALabel", "M058",
                layoutWith(mainWindow, "failureReasonLabel", dynamicProperty("action", "nextView")),
                mainWindow, "<string>nextView</string></property>"},
        Mistake{"PictureMissing", "M059",
                layoutWith(mainWindow, "failureReasonLabel",
                           "<property name=\"pixmap\"><pixmap>banner.png</pixmap></property>"),
                mainWindow, "banner.png"},
        Mistake{"NameTwice", "M060",
                layout(mainWindow, "name=\"copyLogButton\"", "name=\"openLogButton\""), mainWindow,
                "name=\"openLogButton\">\n                 <property name=\"textKey\" "
                "stdset=\"0\">\n                  <string>copy_log"}),
    nameOfMistake);

INSTANTIATE_TEST_SUITE_P(
    Pictures, LayoutMistakesRow,
    testing::Values(
        Mistake{"NoPicture", "M066", writing("AppIcon.png", "an icon"), "AppIcon.png"},
        Mistake{"PictureOfNoBytes", "M066", writing("DotBlue.tiff", ""), "DotBlue.tiff"},
        Mistake{"PictureCutOff", "M066",
                [](const ProductFolder& product) {
                    product.write("AppIcon.png", product.read("AppIcon.png").substr(0, 4000));
                },
                "AppIcon.png"},
        Mistake{"PictureDamaged", "M066",
                [](const ProductFolder& product) {
                    product.write("AppIcon.png", damaged("AppIcon.png"));
                },
                "AppIcon.png"},
        Mistake{"DotCutOff", "M066",
                [](const ProductFolder& product) {
                    product.write("DotGray.tiff", kitFile("DotGray.tiff").substr(0, 500));
                },
                "DotGray.tiff"},
        Mistake{"IconAsSmallAsADot", "M067",
                [](const ProductFolder& product) {
                    product.write("de.lproj/AppIcon.png", smallPicture());
                },
                "de.lproj/AppIcon.png"},
        Mistake{"TiffCalledPng",
                "M068",
                [](const ProductFolder& product) {
                    product.write("checkmark.png", kitFile("DotBlue.tiff"));
                },
                "checkmark.png",
                "",
                {"M067"}}),
    nameOfMistake);

TEST(LayoutMistakesTest, AreNoneWhereAProductHasThePicturesThatTheLayoutsOffer) {
    const ProductFolder product;
    product.write("Sidebar.png", kitFile("checkmark.png"));
    product.write("Sidebar-Dark.png", kitFile("checkmark.png"));
    EXPECT_EQ(printed(product.lint()), "");
}

TEST(LayoutMistakesTest, AreNoneInTheKitsOwnLayoutsEvenWhereTheyDifferByABlank) {
    const ProductFolder product;
    for (const char* name : {mainWindow, customInstall, stepRow}) {
        product.write(name, kitFile(name) + "\n");
    }
    EXPECT_EQ(printed(product.lint()), "");
}

TEST(LayoutMistakesTest, AreNoneWhereALayoutBringsItsOwnTextAndPicture) {
    const ProductFolder product;
    layoutWith(mainWindow, "failureReasonLabel",
               "<property name=\"pixmap\"><pixmap>banner.png</pixmap></property>")(product);
    product.replace(mainWindow, ">open_log<", ">show_log<");
    product.write("banner.png", kitFile("checkmark.png"));
    for (const std::string language : {"en", "de", "ja"}) {
        product.append(language + ".lproj/Localizable.strings",
                       "\"show_log\" = \"Log (" + language + ")\";\n");
    }
    EXPECT_EQ(printed(product.lint()), "");
}

}  // namespace

}  // namespace installer::test
