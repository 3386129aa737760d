// The reader of property lists: a program's Info.plist and the files of settings. What was read is
// written again, as settings are, and must not have changed.

#include <array>
#include <bit>
#include <cmath>
#include <optional>
#include <string>
#include <variant>

#include "linux/bundle/PropertyList.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using namespace installer;
using fuzz::require;

/// What the installer asks property lists for, and what the corpus uses.
constexpr std::array<const char*, 12> keys = {"CFBundleName",
                                              "CFBundleVersion",
                                              "CFBundleIconFile",
                                              "CFBundleExecutable",
                                              "CFBundleIdentifier",
                                              "customPath",
                                              "text",
                                              "number",
                                              "real",
                                              "flag",
                                              "data",
                                              ""};

bool isSame(const std::optional<PreferenceValue>& left,
            const std::optional<PreferenceValue>& right) {
    const auto* number = left ? std::get_if<double>(&*left) : nullptr;
    const auto* other = right ? std::get_if<double>(&*right) : nullptr;
    if (number != nullptr && other != nullptr && std::isnan(*number)) return std::isnan(*other);
    return left == right;
}

/// Written and read again.
PropertyList reread(const PropertyList& list) {
    const std::optional<std::string> bytes = list.serialized();
    require(bytes.has_value());
    std::optional<PropertyList> read = PropertyList::parse(*bytes);
    require(read.has_value());
    for (const char* key : keys) {
        require(isSame(list.value(key), read->value(key)));
        require(list.data(key) == read->data(key));
    }
    return std::move(*read);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<PropertyList> list = PropertyList::parse(fuzz::textOf(data, size));
    if (!list) return 0;
    PropertyList read = reread(*list);
    // Writing settles on a form: whoever saves settings a second time changes nothing else in them.
    // Which of its equal values a binary list shares depends on where they lie in memory.
    const std::string first = read.serialized().value_or("");
    const std::string second = reread(read).serialized().value_or("");
    require(first == second || first.starts_with("bplist00"));

    read.set("customPath", std::string("/Users/Jörg/ <Plug-ins> & more"));
    read.set("number", std::int64_t{-1});
    read.set("real", 0.1);
    read.setData("data", std::string_view("\0\xFF", 2));
    read.remove("text");
    const PropertyList changed = reread(read);
    require(changed.value("customPath") ==
            PreferenceValue(std::string("/Users/Jörg/ <Plug-ins> & more")));
    require(changed.value("number") == PreferenceValue(std::int64_t{-1}));
    require(changed.value("real") == PreferenceValue(0.1));
    require(changed.data("data") == std::string("\0\xFF", 2));
    return 0;
}
