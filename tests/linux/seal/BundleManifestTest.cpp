#include <filesystem>

#include <gmock/gmock.h>

#include "linux/seal/BundleManifest.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

namespace {

using testing::ElementsAre;
using testing::Key;

// What sha256sum(1) says of "text".
constexpr const char* hashOfText =
    "982d9e3eb996f559e633f4d194def3761d909f5a3b647d1a851fead67c32c9d1";

TEST(BundleManifest, ListsFilesAndLinksButNotItself) {
    const ScratchFolder scratch;
    scratch.add("Resources/a file", "text");
    scratch.add("manifest", "");
    scratch.add("manifest.minisig", "");
    scratch.add("maker.pub", "");
    scratch.add("Resources/manifest", "one of the payload");
    std::filesystem::create_symlink("a file", scratch.at("Resources/link"));
    const auto manifest = manifestOf(scratch.path());
    ASSERT_TRUE(manifest);
    EXPECT_THAT(manifest.value(), ElementsAre(Key("Resources/a file"), Key("Resources/link"),
                                              Key("Resources/manifest")));
    EXPECT_EQ(manifest.value().at("Resources/a file"), hashOfText);
}

TEST(BundleManifest, ALinkIsNoFileWithTheTextOfItsTarget) {
    const ScratchFolder scratch;
    scratch.add("a", "text");
    std::filesystem::create_symlink("text", scratch.at("b"));
    const auto manifest = manifestOf(scratch.path());
    ASSERT_TRUE(manifest);
    EXPECT_NE(manifest.value().at("a"), manifest.value().at("b"));
}

TEST(BundleManifest, AFifoIsAnErrorAndNotWaitedFor) {
    const ScratchFolder scratch;
    scratch.addFifo("fifo");
    EXPECT_FALSE(manifestOf(scratch.path()));
}

TEST(BundleManifest, AMissingFolderIsAnError) {
    EXPECT_EQ(manifestOf("/nothing/here").error(), std::errc::no_such_file_or_directory);
}

TEST(BundleManifest, IsReadAsItIsWritten) {
    const BundleManifest manifest = {{"a  b", hashOfText}, {"c", hashOfText}};
    EXPECT_EQ(textOf(manifest), std::string(hashOfText) + "  a  b\n" + hashOfText + "  c\n");
    EXPECT_EQ(parsedManifest(textOf(manifest)), manifest);
}

TEST(BundleManifest, ALineOfAnotherFormMakesItUnreadable) {
    const std::string hash = hashOfText;
    for (const std::string& text : {hash + "  a", hash + " a\n", hash + "  \n", hash + "\n",
                                    std::string("\n"), std::string("short  a\n")}) {
        EXPECT_EQ(parsedManifest(text), std::nullopt) << text;
    }
    EXPECT_EQ(parsedManifest(""), BundleManifest());
}

}  // namespace

}  // namespace installer::test
