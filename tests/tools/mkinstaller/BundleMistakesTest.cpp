#include <filesystem>

#include "linux/log/LinuxSystemLog.h"
#include "tests/tools/mkinstaller/ProductFolder.h"
#include "tools/mkinstaller/making/BundleAssembly.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer::test {

namespace {

namespace fs = std::filesystem;

/// A finished bundle of a clean product.
class BundleMistakesTest : public testing::Test {
  protected:
    BundleMistakesTest() {
        const auto made = assembleBundle(Product::at(sources_.root()).value(), kitOfBuild(),
                                         scratch_.path(), log_);
        EXPECT_TRUE(made) << made.error().message();
        bundle_ = made ? made.value() : "";
    }

    void expectOnly(const std::string& code, const std::string& below) const {
        const auto findings = lintAt(bundle_);
        ASSERT_EQ(findings.size(), 1u) << printed(findings);
        EXPECT_EQ(findings[0].kind->code, code);
        EXPECT_EQ(findings[0].place.file, bundle_ + "/Contents/" + below);
        EXPECT_EQ(findings[0].place.line, 1u);
    }

    ProductFolder sources_;
    ScratchFolder scratch_;
    LinuxSystemLog log_{"mkinstaller_tests", ""};
    std::string bundle_;
};

TEST_F(BundleMistakesTest, ACleanOneHasNone) {
    EXPECT_EQ(fs::path(bundle_).filename(), "Acme Filters 2 Installer.app");
    EXPECT_EQ(printed(lintAt(bundle_)), "");
}

TEST_F(BundleMistakesTest, AMissingPartOfTheProgramIsTold) {
    fs::remove(bundle_ + "/Contents/MacOS/privileged-helper");
    expectOnly("M008", "MacOS/privileged-helper");
}

TEST_F(BundleMistakesTest, AProgramWithoutItsExecutableBitsIsTold) {
    fs::permissions(bundle_ + "/Contents/MacOS/Installer", fs::perms(0644));
    expectOnly("M008", "MacOS/Installer");
}

TEST_F(BundleMistakesTest, AMissingPictureIsTold) {
    fs::remove(bundle_ + "/Contents/Resources/checkmark.png");
    expectOnly("M065", "Resources/checkmark.png");
}

TEST_F(BundleMistakesTest, AreTheSameAsInItsSources) {
    fs::remove(bundle_ + "/Contents/Resources/de.lproj/proceed.rtf");
    expectOnly("M040", "Resources/de.lproj/proceed.rtf");
}

TEST(BundleMistakes, TheSampleHasNone) {
    EXPECT_EQ(printed(lintAt(SAMPLE_BUNDLE)), "");
}

}  // namespace

}  // namespace installer::test
