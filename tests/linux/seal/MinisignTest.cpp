#include <gtest/gtest.h>

#include "foundation/text/Text.h"
#include "linux/seal/Minisign.h"

namespace installer::test {

namespace {

// Made with minisign 0.11: of the text "text".
const std::string keyText =
    "untrusted comment: minisign public key CFC75A2702D82336\n"
    "RWQ2I9gCJ1rHz5CWJ2pPUT5tThLEmcV9SEQdmNm0A31/FfLwmw5Kq9+p\n";
const std::string signatureText =
    "untrusted comment: signature from minisign secret key\n"
    "RUQ2I9gCJ1rHzwlUJ1Solb5liv26K1AvFHi+"
    "Je4ApJpY0y56M8oPswYlKXiccthLjmCYO2Iv9aUleuq8NRKJwcucmtS0xmV0EAc=\n"
    "trusted comment: made for a test\n"
    "m5k665h2PNspj6mVTQgaRWTaJW6O7Cnno4YS58Q1qoXs+NDAiiS1ICRlWiKvz2MFAuMHq6P8EKu7mkz0MBRqDA==\n";

TEST(Minisign, VerifiesWhatMinisignSigned) {
    const auto key = parsedPublicKey(keyText);
    ASSERT_TRUE(key);
    EXPECT_TRUE(isSignedBy(*key, "text", signatureText));
    EXPECT_FALSE(isSignedBy(*key, "Text", signatureText));
    EXPECT_FALSE(isSignedBy(*key, "", signatureText));
}

TEST(Minisign, LineEndsOfAnotherSystemChangeNothing) {
    const auto key = parsedPublicKey(replacingAll(keyText, "\n", "\r\n"));
    ASSERT_TRUE(key);
    EXPECT_TRUE(isSignedBy(*key, "text", replacingAll(signatureText, "\n", "\r\n")));
}

TEST(Minisign, AChangedTrustedCommentMakesTheSignatureWorthless) {
    const auto key = parsedPublicKey(keyText);
    ASSERT_TRUE(key);
    EXPECT_FALSE(isSignedBy(*key, "text", replacingAll(signatureText, "made for", "taken for")));
}

TEST(Minisign, AnotherKeysSignatureDoesNotHold) {
    auto key = parsedPublicKey(keyText);
    ASSERT_TRUE(key);
    key->bytes.back() = static_cast<char>(key->bytes.back() ^ 1);
    EXPECT_FALSE(isSignedBy(*key, "text", signatureText));
    key = parsedPublicKey(keyText);
    key->number.back() = static_cast<char>(key->number.back() ^ 1);
    EXPECT_FALSE(isSignedBy(*key, "text", signatureText));
}

TEST(Minisign, WhatIsCutShortIsNoKeyAndNoSignature) {
    const auto key = parsedPublicKey(keyText);
    ASSERT_TRUE(key);
    // Without its last line end each is still whole.
    for (std::size_t length = 0; length < keyText.size() - 1; ++length) {
        EXPECT_FALSE(parsedPublicKey(keyText.substr(0, length))) << length;
    }
    for (std::size_t length = 0; length < signatureText.size() - 1; ++length) {
        EXPECT_FALSE(isSignedBy(*key, "text", signatureText.substr(0, length))) << length;
    }
}

TEST(Minisign, AKeyIsReadAsItIsWritten) {
    const auto key = parsedPublicKey(keyText);
    ASSERT_TRUE(key);
    const auto again = parsedPublicKey(textOf(*key));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->number, key->number);
    EXPECT_EQ(again->bytes, key->bytes);
}

}  // namespace

}  // namespace installer::test
