#include <string>

#include <gtest/gtest.h>

#include "foundation/values/PackageName.h"

namespace installer::test {
namespace {

TEST(PackageName, EverySuffixOfTheListMakesAPackage) {
    for (const char* name :
         {"Tool.app", "a.bundle", "a.plugin", "a.component", "a.kext", "a.lrplugin", "a.prefPane",
          "a.qlgenerator", "a.mdimporter", "a.pkg", "a.mpkg", "a.rtfd", "Two words.v2.app"}) {
        EXPECT_TRUE(isPackageName(name)) << name;
    }
}

TEST(PackageName, OnlyAWholeSuffixAfterANameCounts) {
    for (const char* name : {"", "app", ".app", "Tool.app ", "Tool.apps", "Tool.app.old", "Toolapp",
                             "Tool.", "Tool.APP", "Tool.prefpane", "Tool.8bf"}) {
        EXPECT_FALSE(isPackageName(name)) << name;
    }
}

}  // namespace
}  // namespace installer::test
