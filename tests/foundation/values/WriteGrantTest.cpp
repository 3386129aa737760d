#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/values/WriteGrant.h"

namespace installer::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

WriteGrant grantOf(std::initializer_list<const char*> folders,
                   std::initializer_list<const char*> destinations) {
    WriteGrant grant;
    for (const char* folder : folders) grant.addFolder(folder);
    for (const char* destination : destinations) grant.addDestination(destination);
    return grant;
}

TEST(WriteGrant, HoldsNothingAtFirst) {
    const WriteGrant grant;
    for (const char* path : {"/", "/a", "", "a"}) {
        EXPECT_FALSE(grant.holds(path)) << path;
        EXPECT_FALSE(grant.leadsThrough(path)) << path;
        EXPECT_FALSE(grant.mayRemove(path)) << path;
    }
}

TEST(WriteGrant, HoldsItsDestinationsAndWhatLiesBelowThem) {
    const WriteGrant grant = grantOf({"/Library"}, {"/Library/Acme/F.plugin"});
    EXPECT_TRUE(grant.holds("/Library/Acme/F.plugin"));
    EXPECT_TRUE(grant.holds("/Library/Acme/F.plugin/Contents/x"));
    for (const char* path : {"/Library/Acme/F.plugin2", "/Library/Acme/F.plugi", "/Library/Acme",
                             "/Library", "/", "Library/Acme/F.plugin", "/library/Acme/F.plugin"}) {
        EXPECT_FALSE(grant.holds(path)) << path;
    }
}

TEST(WriteGrant, LeadsThroughTheFoldersAboveADestinationOnly) {
    const WriteGrant grant =
        grantOf({"/Library"}, {"/Library/Acme/Deep/F.plugin", "/Library/Acme.old"});
    for (const char* path : {"/Library", "/Library/Acme", "/Library/Acme/Deep"}) {
        EXPECT_TRUE(grant.leadsThrough(path)) << path;
    }
    for (const char* path : {"/Library/Acme/Deep/F.plugin", "/Library/Acm", "/Library/Acme/D",
                             "/Library/Acme.old", "/Libraries", "/tmp"}) {
        EXPECT_FALSE(grant.leadsThrough(path)) << path;
    }
}

TEST(WriteGrant, TakesNoDestinationOutsideItsFolders) {
    WriteGrant grant = grantOf(
        {"/Library/Acme"}, {"/Library/Acme", "/Library/Acmes/x", "/x", "x", "", "/", "/Library"});
    EXPECT_THAT(grant.destinations(), IsEmpty());
    grant.addDestination("/Library//Acme/x/");
    EXPECT_THAT(grant.destinations(), ElementsAre("/Library/Acme/x"));
}

TEST(WriteGrant, KeepsNoFolderWithinAnother) {
    EXPECT_THAT(grantOf({"/a/b", "/c", "/a/b/c", "/a//b/", "/ab"}, {}).folders(),
                ElementsAre("/a/b", "/c", "/ab"));
    EXPECT_THAT(grantOf({"/a/b", "/c", "/a"}, {}).folders(), ElementsAre("/c", "/a"));
    EXPECT_THAT(grantOf({"/a", "/", "/b", "relative", ""}, {}).folders(), ElementsAre("/"));
}

TEST(WriteGrant, TheRootAsAFolderHoldsEveryDestinationButItself) {
    EXPECT_THAT(grantOf({"/"}, {"/", "/F.plugin", "/a/b"}).destinations(),
                ElementsAre("/F.plugin", "/a/b"));
}

TEST(WriteGrant, RemovesEntriesOfItsNamesBelowItsFoldersOnly) {
    WriteGrant grant = grantOf({"/Plug-Ins"}, {"/Plug-Ins/New"});
    grant.addRemovableName("F.plugin");
    grant.addRemovableName("");
    for (const char* path : {"/Plug-Ins/F.plugin", "/Plug-Ins/a/b/F.plugin", "/Plug-Ins/New/x"}) {
        EXPECT_TRUE(grant.mayRemove(path)) << path;
    }
    for (const char* path : {"/F.plugin", "/Plug-Ins", "/Plug-Ins/F.plugin/x", "/Other/F.plugin",
                             "/Plug-Ins/f.plugin", "F.plugin", "/Plug-Ins/"}) {
        EXPECT_FALSE(grant.mayRemove(path)) << path;
    }
    EXPECT_FALSE(grant.holds("/Plug-Ins/F.plugin"));
}

TEST(WriteGrant, ACopyGetsDestinationsOfItsOwn) {
    const WriteGrant grant = grantOf({"/Library"}, {"/Library/a"});
    WriteGrant copy = grant;
    EXPECT_EQ(copy, grant);
    copy.addDestination("/Library/b");
    EXPECT_THAT(copy.destinations(), ElementsAre("/Library/a", "/Library/b"));
    EXPECT_THAT(grant.destinations(), ElementsAre("/Library/a"));
    EXPECT_NE(copy, grant);
    EXPECT_EQ(copy, grantOf({"/Library"}, {"/Library/b", "/Library/a"}));
}

TEST(WriteGrant, IsTheSameWithAndWithoutDestinationsThatWereNotTaken) {
    EXPECT_EQ(grantOf({"/Library"}, {"/x"}), grantOf({"/Library"}, {}));
}

}  // namespace
}  // namespace installer::test
