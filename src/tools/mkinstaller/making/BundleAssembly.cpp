#include "tools/mkinstaller/making/BundleAssembly.h"

#include <filesystem>
#include <system_error>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/files/LinuxFileManager.h"
#include "ports/SystemLog.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/NameRules.h"

namespace installer {

namespace {

/// The maker's own notes and hidden files stay in the maker's folder.
bool belongsIntoResources(const std::string& name) {
    return !name.starts_with('.') && lowerCased(stemOf(name)) != "readme" && name != "Info.plist" &&
           name != "SharedSupport";
}

class Assembly {
  public:
    Assembly(const Product& product, const Kit& kit, std::string contents, SystemLog& log)
        // The maker's folders are read as the maker sees them, through links too.
        : product_(product),
          kit_(kit),
          contents_(std::move(contents)),
          log_(log),
          files_(log, LinkPolicy::follow) {}

    std::error_code make() {
        const std::string resources = joinPath(contents_, "Resources");
        if (const auto error = files_.createFolders(resources, 0755)) return error;
        for (const char* folder : {"MacOS", "Frameworks"}) {
            if (const auto error = put(kit_.contents(), folder, contents_)) return error;
        }
        for (const std::string& name : sortedNames(kit_.resources())) {
            if (const auto error = put(kit_.resources(), name, resources)) return error;
        }
        for (const std::string& name : sortedNames(product_.resources)) {
            if (!belongsIntoResources(name)) continue;
            if (const auto error = put(product_.resources, name, resources)) return error;
        }
        return putRest();
    }

  private:
    std::error_code putRest() {
        if (const auto error = put(parentPath(product_.information), "Info.plist", contents_)) {
            return error;
        }
        if (entryType(product_.sharedSupport) == EntryType::missing) return {};
        return put(parentPath(product_.sharedSupport), "SharedSupport", contents_);
    }

    std::error_code put(const std::string& from, const std::string& name, const std::string& to) {
        const std::string destination = joinPath(to, name);
        std::error_code error;
        if (files_.exists(destination)) error = files_.remove(destination);
        if (!error) {
            error = files_.copy(absolute(joinPath(from, name)), destination, nullptr);
        }
        if (error) log_.log("Could not copy " + joinPath(from, name) + ": " + error.message());
        return error;
    }

    static std::string absolute(const std::string& path) {
        return withSingleSeparators(std::filesystem::absolute(path).string());
    }

    const Product& product_;
    const Kit& kit_;
    std::string contents_;
    SystemLog& log_;
    LinuxFileManager files_;
};

}  // namespace

Result<std::string> assembleBundle(const Product& product, const Kit& kit,
                                   const std::string& folder, SystemLog& log) {
    namespace fs = std::filesystem;
    const std::string company = product.name("company_name");
    const std::string name = product.name("product_name");
    if (!isFolderName(company) || !isFolderName(name)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    const std::string place = withSingleSeparators(fs::absolute(folder).string());
    const std::string bundle = joinPath(place, bundleName(company, name));
    const std::string fresh = joinPath(place, ".mkinstaller-bundle.new");
    std::error_code error;
    fs::remove_all(fresh, error);
    if (!error) error = Assembly(product, kit, joinPath(fresh, "Contents"), log).make();
    if (!error) fs::remove_all(bundle, error);
    if (!error) fs::rename(fresh, bundle, error);
    if (!error) return bundle;
    std::error_code ignored;
    fs::remove_all(fresh, ignored);
    return error;
}

}  // namespace installer
