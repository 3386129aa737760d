#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/values/Result.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

class SystemLog;

/// A finished bundle and what is known of it: all that goes into a file for customers. The files
/// lie in a temporary folder that goes with this object.
class PackSource {
  public:
    /// Puts the product's bundle together in a temporary folder. An error, with the reason in the
    /// log, when it cannot be put together.
    [[nodiscard]] static Result<PackSource> make(const Product& product, const Kit& kit,
                                                 SystemLog& log);
    ~PackSource();
    PackSource(PackSource&& other) noexcept;
    PackSource& operator=(PackSource&&) = delete;
    PackSource(const PackSource&) = delete;
    PackSource& operator=(const PackSource&) = delete;

    std::string company;
    std::string product;
    std::string identifier;
    std::string version;
    /// Who answers for a distribution's package, as "NAME <ADDRESS>".
    std::string maintainer;
    /// The time of everything in the file that is younger: SOURCE_DATE_EPOCH, else that of the
    /// product's youngest file. In seconds since 1970.
    std::int64_t time = 0;

    /// The folder in which the bundle, and nothing else, lies.
    [[nodiscard]] std::string bundleFolder() const { return folder_ + "/bundle"; }
    /// The bundle's own folder.
    [[nodiscard]] std::string bundle() const;
    /// A folder for the work of one format; it is made, empty.
    [[nodiscard]] std::string newWorkFolder(const std::string& format) const;
    /// "COMPANY PRODUCT".
    [[nodiscard]] std::string title() const { return company + " " + product; }
    /// The title as part of a file's name: no blanks.
    [[nodiscard]] std::string fileTitle() const;
    // Names for distributions: small letters, digits and hyphens. Made from the identifier when the
    // product's own names have none of them.
    [[nodiscard]] std::string companySlug() const;
    [[nodiscard]] std::string productSlug() const;
    [[nodiscard]] std::string packageName() const { return companySlug() + "-" + productSlug(); }
    /// The address of the identifier's domain.
    [[nodiscard]] std::string homepage() const;

  private:
    PackSource() = default;

    std::string folder_;
};

}  // namespace installer
