#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace installer {

struct XmlError {
    std::size_t line = 1;
    std::string message;
};

/// What a scan of an XML text meets.
struct XmlEvents {
    using Attributes = std::map<std::string, std::string>;

    std::function<void(std::size_t line, const std::string& name, const Attributes& attributes)>
        start;
    /// `text` is what stood directly in the element, but not in those inside it.
    std::function<void(const std::string& name, const std::string& text)> end;
};

/// Reads the text from its beginning to its end, or to the first error, which is returned.
[[nodiscard]] std::optional<XmlError> scanXml(std::string_view text, const XmlEvents& events);

/// The first error alone.
[[nodiscard]] std::optional<XmlError> xmlErrorIn(std::string_view text);

}  // namespace installer
