#include "app/HelpPage.h"

#include "app/texts/WindowTexts.h"
#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

/// As a part of a path in an address: only what never has a meaning of its own stays.
std::string percentEncoded(std::string_view text) {
    static constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isLetterOrDigit = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                                     (byte >= '0' && byte <= '9');
        if (isLetterOrDigit || contains("-._~", std::string_view(&character, 1))) {
            encoded += character;
        } else {
            encoded += '%';
            encoded += digits[byte >> 4U];
            encoded += digits[byte & 15U];
        }
    }
    return encoded;
}

}  // namespace

std::string helpWord(std::string_view productName) {
    return lowerCased(withoutWhiteSpace(productName));
}

std::string helpPageAddress(const Bundle& bundle) {
    return formatted(localizedText(bundle, "help_url_format"),
                     {percentEncoded(helpWord(productName(bundle)))});
}

}  // namespace installer
