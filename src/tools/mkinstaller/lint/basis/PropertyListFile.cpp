#include "tools/mkinstaller/lint/basis/PropertyListFile.h"

#include <variant>

#include "tools/mkinstaller/lint/basis/XmlScan.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

PropertyListFile::PropertyListFile(const std::string& path) : bytes_(contentsOf(path)) {
    if (!bytes_) {
        problem_ = "the property list is missing or cannot be read";
        return;
    }
    list_ = PropertyList::parse(*bytes_);
    if (list_) return;
    problem_ = "the property list is broken";
    if (bytes_->starts_with("bplist")) return;
    if (const auto error = xmlErrorIn(*bytes_)) {
        problem_ += ": " + error->message;
        lineOfError_ = error->line;
    }
}

std::optional<std::string> PropertyListFile::text(const std::string& key) const {
    if (!list_) return std::nullopt;
    const auto value = list_->value(key);
    if (!value) return std::nullopt;
    const auto* text = std::get_if<std::string>(&*value);
    return text == nullptr ? std::nullopt : std::optional(*text);
}

std::size_t PropertyListFile::lineOf(const std::string& key) const {
    if (!bytes_) return 1;
    const auto place = bytes_->find("<key>" + key + "</key>");
    if (place == std::string::npos) return 1;
    const auto value = bytes_->find('<', place + key.size() + 11);
    return installer::lineOf(*bytes_, value == std::string::npos ? place : value);
}

}  // namespace installer
