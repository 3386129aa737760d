#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace installer::rtf {

struct Token {
    enum class Kind {
        groupStart,
        groupEnd,
        controlWord,    ///< `text` is the word, `number` its parameter
        controlSymbol,  ///< `text` is the one character after the backslash
        hexByte,        ///< `byte` was written as two hexadecimal digits
        text,           ///< `text` holds bytes as they stand, line ends included
        end,
    };

    Kind kind = Kind::end;
    std::string_view text = {};
    std::optional<std::int32_t> number = {};
    unsigned char byte = 0;
};

/// Splits RTF into tokens. They point into the text, which must outlive them. Binary data is
/// skipped. Numbers are clamped to the 32-bit range.
class Tokenizer {
  public:
    explicit Tokenizer(std::string_view rtf) : rtf_(rtf) {}

    [[nodiscard]] Token next();

    /// How many bytes have been read.
    [[nodiscard]] std::size_t place() const { return place_; }

  private:
    Token textToken();
    Token controlToken();
    Token controlWordToken();
    Token hexToken();
    std::optional<std::int32_t> parameter();

    std::string_view rtf_;
    std::size_t place_ = 0;
};

}  // namespace installer::rtf
