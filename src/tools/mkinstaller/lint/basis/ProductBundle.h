#pragma once

#include <optional>
#include <string>

#include "ports/Bundle.h"
#include "tools/mkinstaller/sources/Kit.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer {

/// The bundle that a product's sources will become, for the core to read: what the product lacks is
/// the kit's. In English, else in the product's first language.
class ProductBundle final : public Bundle {
  public:
    /// Both outlive this object.
    ProductBundle(const Product& product, const Kit& kit);

    [[nodiscard]] std::string resourcesFolder() const override { return resources_; }
    [[nodiscard]] std::string sharedSupportFolder() const override { return sharedSupport_; }
    [[nodiscard]] std::optional<std::string> resourcePath(const std::string& name,
                                                          const std::string& type) const override;
    [[nodiscard]] std::optional<std::string> localizedString(
        const std::string& key, const std::string& table) const override;
    [[nodiscard]] std::string localization() const override { return language_; }
    [[nodiscard]] std::optional<std::string> informationValue(
        const std::string& key) const override;

    /// From now on every description that is asked for is this file; none for the usual ones.
    void showOnly(std::optional<std::string> layout) { layout_ = std::move(layout); }

  private:
    const Product& product_;
    const Kit& kit_;
    // Absolute: the core knows no relative paths.
    std::string resources_;
    std::string sharedSupport_;
    std::string language_;
    std::optional<std::string> layout_;
};

}  // namespace installer
