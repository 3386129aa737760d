#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "linux/bundle/PackageLayout.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {
namespace {

const std::string withNul("To\0ol", 5);

std::optional<std::string> programNamed(const std::string& name) {
    FakeBundle bundle;
    bundle.information["CFBundleExecutable"] = name;
    return namedProgram("/A.app", bundle);
}

TEST(PackageLayout, AProgramLiesInTheProgramsFolder) {
    EXPECT_EQ(packageProgram("/A.app", "run me"), "/A.app/Contents/MacOS/run me");
    EXPECT_EQ(packageProgram("/A.app/", "..x"), "/A.app/Contents/MacOS/..x");
}

TEST(PackageLayout, ThePropertyListNamesTheProgram) {
    EXPECT_EQ(programNamed("Tool"), "/A.app/Contents/MacOS/Tool");
    EXPECT_EQ(namedProgram("/A.app", FakeBundle()), std::nullopt);
}

TEST(PackageLayout, AProgramsNameCannotLeadOutOfThePackage) {
    for (const std::string& name :
         {std::string(), std::string("."), std::string(".."), std::string("/"),
          std::string("/bin/sh"), std::string("a/b"), std::string("../../../tool"), withNul}) {
        EXPECT_FALSE(isPlainFileName(name)) << name;
        EXPECT_EQ(packageProgram("/A.app", name), std::nullopt) << name;
        EXPECT_EQ(programNamed(name), std::nullopt) << name;
    }
}

TEST(PackageLayout, AProgramBelongsToThePackageAboveTheProgramsFolder) {
    EXPECT_EQ(packageOfProgram("/d/A.app/Contents/MacOS/Tool"), "/d/A.app");
    EXPECT_EQ(packageOfProgram("/d/A.app//Contents//MacOS//Tool"), "/d/A.app");
    EXPECT_EQ(packageOfProgram("/a\nb/c.app/Contents/MacOS/x"), "/a\nb/c.app");
    EXPECT_EQ(packageOfProgram("/usr/bin/Installer"), std::nullopt);
    EXPECT_EQ(packageOfProgram("/a/Contents/Other/Installer"), std::nullopt);
    EXPECT_EQ(packageOfProgram("/a/Other/MacOS/Installer"), std::nullopt);
    EXPECT_EQ(packageOfProgram("Installer"), std::nullopt);
}

}  // namespace
}  // namespace installer::test
