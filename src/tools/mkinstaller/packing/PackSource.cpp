#include "tools/mkinstaller/packing/PackSource.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include <stdlib.h>
#include <sys/stat.h>

#include "foundation/text/Text.h"
#include "tools/mkinstaller/lint/basis/PropertyListFile.h"
#include "tools/mkinstaller/making/BundleAssembly.h"
#include "tools/mkinstaller/sources/Identifiers.h"
#include "tools/mkinstaller/sources/NameRules.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

/// Folders do not count: copying a file into one makes it younger.
std::int64_t youngestFile(const std::string& folder) {
    std::int64_t youngest = 0;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        struct stat status{};
        if (::lstat(entry->path().c_str(), &status) != 0 || S_ISDIR(status.st_mode)) continue;
        youngest = std::max<std::int64_t>(youngest, status.st_mtime);
    }
    return youngest;
}

std::optional<std::int64_t> timeOfEnvironment() {
    const char* text = std::getenv("SOURCE_DATE_EPOCH");
    if (text == nullptr) return std::nullopt;
    const std::string_view digits = text;
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), seconds);
    if (error != std::errc() || end != digits.end() || seconds < 0) return std::nullopt;
    return seconds;
}

/// Small letters and digits of the text, with one hyphen for what stands between them.
std::string slugOf(std::string_view text) {
    std::string slug;
    for (const char raw : lowerCased(text)) {
        const bool isKept = (raw >= 'a' && raw <= 'z') || (raw >= '0' && raw <= '9');
        if (isKept) {
            slug += raw;
        } else if (!slug.empty() && slug.back() != '-') {
            slug += '-';
        }
    }
    while (slug.ends_with('-')) slug.pop_back();
    return slug;
}

}  // namespace

Result<PackSource> PackSource::make(const Product& product, const Kit& kit, SystemLog& log) {
    PackSource source;
    std::error_code error;
    std::string folder = (fs::temp_directory_path(error) / "mkinstaller-XXXXXX").string();
    if (error || ::mkdtemp(folder.data()) == nullptr) {
        return std::make_error_code(std::errc::permission_denied);
    }
    source.folder_ = folder;
    fs::create_directory(source.bundleFolder(), error);
    if (error) return error;
    const auto bundle = assembleBundle(product, kit, source.bundleFolder(), log);
    if (!bundle) return bundle.error();
    const PropertyListFile information(product.information);
    source.company = product.name("company_name");
    source.product = product.name("product_name");
    source.identifier = information.text("CFBundleIdentifier").value_or("");
    source.version = information.text("CFBundleShortVersionString").value_or("");
    source.maintainer = source.company + " <packages@" + domainOf(source.identifier) + ">";
    source.time = timeOfEnvironment().value_or(youngestFile(bundle.value()));
    return source;
}

PackSource::~PackSource() {
    std::error_code ignored;
    if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

PackSource::PackSource(PackSource&& other) noexcept
    : company(std::move(other.company)),
      product(std::move(other.product)),
      identifier(std::move(other.identifier)),
      version(std::move(other.version)),
      maintainer(std::move(other.maintainer)),
      time(other.time),
      folder_(std::exchange(other.folder_, {})) {}

std::string PackSource::bundle() const {
    return bundleFolder() + "/" + bundleName(company, product);
}

std::string PackSource::newWorkFolder(const std::string& format) const {
    const std::string folder = folder_ + "/" + format;
    fs::create_directory(folder);
    return folder;
}

std::string PackSource::fileTitle() const {
    return replacingAll(title(), " ", "-");
}

std::string PackSource::companySlug() const {
    const std::string slug = slugOf(company);
    return slug.empty() ? slugOf(domainOf(identifier)) : slug;
}

std::string PackSource::productSlug() const {
    const std::string slug = slugOf(product);
    return slug.empty() ? slugOf(identifier.substr(identifier.rfind('.') + 1)) : slug;
}

std::string PackSource::homepage() const {
    return "https://" + domainOf(identifier) + "/";
}

}  // namespace installer
