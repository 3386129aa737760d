#include <gtest/gtest.h>

#include "tools/installerctl/records/Receipt.h"

namespace installer::test {
namespace {

std::string asItIs(const std::string& path) {
    return path;
}

bool nothingIsForbidden(const Receipt& /*receipt*/, const std::string& /*path*/) {
    return false;
}

Receipt sampleReceipt() {
    Receipt receipt;
    receipt.identifier = "com.example.filters";
    receipt.company = "Acme";
    receipt.product = "Filters 2";
    receipt.version = "1.0";
    receipt.isComplete = true;
    receipt.since = receipt.installed = "2026-01-31T12:00:00Z";
    receipt.users = {{"ann", "/home/ann"}, {"nobody", ""}};
    receipt.hosts = {{"Adobe Photoshop CS6", "ann", "/Applications/A", "/Applications/A/Plug-Ins"}};
    receipt.items = {
        {"/Applications/Tool.app", "HD/Applications/Tool.app", "mirrorPackage", "", ""}};
    receipt.files = {
        {"/Applications/Tool.app", EntryKind::folder, 0775, 0, ""},
        {"/Applications/Tool.app/odd \xFF", EntryKind::file, 0775, 3, std::string(64, 'a')},
        {"/Applications/Tool.app/any mode", EntryKind::file, std::nullopt, 3, std::string(64, 'b')},
        {"/Applications/Tool.app/link", EntryKind::link, std::nullopt, 0, "hex:\xFE"}};
    receipt.folders = {"/Applications"};
    receipt.log = "/Library/log";
    return receipt;
}

std::string problemOf(const std::string& text) {
    return parsedReceipt(text, asItIs, nothingIsForbidden).problem;
}

/// The sample's text with one part of it replaced.
std::string changedText(const std::string& part, const std::string& replacement) {
    std::string text = receiptText(sampleReceipt(), asItIs);
    const auto place = text.find(part);
    EXPECT_NE(place, std::string::npos) << part;
    return text.replace(place, part.size(), replacement);
}

TEST(Receipt, SaysAfterReadingWhatItSaidBeforeWriting) {
    const std::string text = receiptText(sampleReceipt(), asItIs);
    const ReadReceipt read = parsedReceipt(text, asItIs, nothingIsForbidden);
    ASSERT_EQ(read.problem, "");
    EXPECT_EQ(receiptText(read.receipt, asItIs), text);
    ASSERT_EQ(read.receipt.files.size(), 4U);
    EXPECT_EQ(read.receipt.files[1].path, "/Applications/Tool.app/odd \xFF");
    EXPECT_EQ(read.receipt.files[2].mode, std::nullopt);
    EXPECT_EQ(read.receipt.files[3].contents, "hex:\xFE");
}

TEST(Receipt, TextsOfAnyBytesAreWrittenAndReadAgain) {
    Receipt receipt = sampleReceipt();
    const std::string bytes = "\xFF\x01";
    for (std::string* field : {&receipt.company, &receipt.product, &receipt.version, &receipt.since,
                               &receipt.installed, &receipt.bundle, &receipt.items[0].rule}) {
        *field = bytes;
    }
    const ReadReceipt read =
        parsedReceipt(receiptText(receipt, asItIs), asItIs, nothingIsForbidden);
    ASSERT_EQ(read.problem, "");
    EXPECT_EQ(read.receipt.since, bytes);
    EXPECT_EQ(read.receipt.installed, bytes);
    EXPECT_EQ(read.receipt.bundle, bytes);
    EXPECT_EQ(read.receipt.items[0].rule, bytes);
}

TEST(Receipt, PathsAreMappedInBothDirections) {
    const auto seen = [](const std::string& path) {
        return path.starts_with("/disk/") ? path.substr(5) : path;
    };
    const auto onDisk = [](const std::string& path) { return "/disk" + path; };
    Receipt receipt;
    receipt.identifier = "x";
    receipt.folders = {"/disk/Library"};
    const std::string text = receiptText(receipt, seen);
    EXPECT_NE(text.find("\"/Library\""), std::string::npos);
    EXPECT_EQ(parsedReceipt(text, onDisk, nothingIsForbidden).receipt.folders.front(),
              "/disk/Library");
}

TEST(ReceiptProblem, EveryPathIsAskedFor) {
    const std::string text = receiptText(sampleReceipt(), asItIs);
    for (const std::string forbidden : {"/Applications/Tool.app", "/Applications/Tool.app/link",
                                        "/Applications", "/Library/log"}) {
        const auto read = parsedReceipt(
            text, asItIs,
            [&](const Receipt& /*receipt*/, const std::string& path) { return path == forbidden; });
        EXPECT_EQ(read.problem, "it names a folder of the system: " + forbidden);
    }
}

TEST(ReceiptProblem, WhatIsNoJsonOrNoReceiptIsRefused) {
    for (const std::string text : {"", "{", "[]", "null", "{}", "\xFF"})
        EXPECT_NE(problemOf(text), "");
}

TEST(ReceiptProblem, AnotherSchemaIsRefused) {
    EXPECT_EQ(problemOf(changedText("\"schema\": 1", "\"schema\": 2")), "it is of another schema");
}

TEST(ReceiptProblem, PathsThatAreNotPlainAreRefused) {
    for (const std::string path :
         {"/Library/../log", "/Library/./log", "//Library/log", "Library/log", "/Library/log/", "/",
          "hex:2f00", "hex:2", "hex:zz"}) {
        EXPECT_NE(problemOf(changedText("/Library/log", path)), "") << path;
    }
}

TEST(ReceiptProblem, AHashAModeAndATypeMustBeOnes) {
    EXPECT_EQ(problemOf(changedText(std::string(64, 'a'), std::string(63, 'a'))), "a hash is none");
    EXPECT_EQ(problemOf(changedText(std::string(64, 'a'), std::string(64, 'G'))), "a hash is none");
    EXPECT_EQ(problemOf(changedText("\"mode\": 509", "\"mode\": 4096")), "a mode is none");
    EXPECT_EQ(problemOf(changedText("\"mode\": 509", "\"mode\": -1")),
              "the field mode is no number");
    EXPECT_EQ(problemOf(changedText("\"folder\"", "\"fifo\"")), "an entry is of no known type");
}

TEST(ReceiptName, IsAPlainFileNameOfFewCharacters) {
    EXPECT_TRUE(isReceiptName("com.example.filters-2_x"));
    for (const std::string name : {"", ".", "..", ".x", "a/b", "a b", "\xC3\xA9"}) {
        EXPECT_FALSE(isReceiptName(name)) << name;
    }
    EXPECT_FALSE(isReceiptName(std::string(201, 'x')));
}

}  // namespace
}  // namespace installer::test
