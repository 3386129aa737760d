#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "linux/bundle/PropertyList.h"

namespace installer {

/// A property list on the disk, read as the installer reads it, with the places of its values.
class PropertyListFile {
  public:
    explicit PropertyListFile(const std::string& path);

    [[nodiscard]] bool isReadable() const { return list_.has_value(); }
    /// What is wrong, and where, when it is not readable.
    [[nodiscard]] const std::string& problem() const { return problem_; }
    [[nodiscard]] std::size_t lineOfError() const { return lineOfError_; }

    /// The value as the installer sees it; none when it is missing or of another type.
    [[nodiscard]] std::optional<std::string> text(const std::string& key) const;

    /// Where the key's value stands; 1 in a binary list and without the key.
    [[nodiscard]] std::size_t lineOf(const std::string& key) const;

  private:
    std::optional<std::string> bytes_;
    std::optional<PropertyList> list_;
    std::string problem_;
    std::size_t lineOfError_ = 1;
};

}  // namespace installer
