// What every bundle promises.

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "linux/bundle/LinuxBundle.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// A bundle that speaks English. What is put in is there for the bundles opened afterwards.
class BundleScene {
  public:
    virtual ~BundleScene() = default;
    [[nodiscard]] virtual std::string folder() const = 0;
    /// Gives the file's path.
    virtual std::string addResource(const std::string& file) = 0;
    virtual void addText(const std::string& table, const std::string& key,
                         const std::string& text) = 0;
    virtual void addInformation(const std::string& key, const std::string& text) = 0;
    [[nodiscard]] virtual std::unique_ptr<Bundle> bundle() = 0;
    /// The bundles of the machine, this one among them.
    [[nodiscard]] virtual Bundles& bundles() = 0;
};

namespace {

class BundleOnDisk : public BundleScene {
  public:
    BundleOnDisk() { disk_.addFolder("Tool.app/Contents/Resources"); }

    std::string folder() const override { return disk_.at("Tool.app"); }
    std::string addResource(const std::string& file) override {
        return disk_.add("Tool.app/Contents/Resources/" + file, "x");
    }
    void addText(const std::string& table, const std::string& key,
                 const std::string& text) override {
        tables_[table] += "\"" + key + "\" = \"" + text + "\";\n";
        disk_.add("Tool.app/Contents/Resources/en.lproj/" + table + ".strings", tables_[table]);
    }
    void addInformation(const std::string& key, const std::string& text) override {
        information_ += "<key>" + key + "</key><string>" + text + "</string>";
        disk_.add("Tool.app/Contents/Info.plist",
                  "<plist version=\"1.0\"><dict>" + information_ + "</dict></plist>");
    }
    std::unique_ptr<Bundle> bundle() override {
        return std::make_unique<LinuxBundle>(folder(), std::vector<std::string>{"en"}, log_);
    }
    Bundles& bundles() override { return bundles_; }

  private:
    ScratchFolder disk_;
    RecordingLog log_;
    LinuxBundles bundles_{{"en"}, log_};
    std::map<std::string, std::string> tables_;
    std::string information_;
};

class BundleOfValues : public BundleScene {
  public:
    BundleOfValues() { bundles_.informationByPath[folder()] = {}; }

    std::string folder() const override { return "/Tool.app"; }
    std::string addResource(const std::string& file) override {
        return values_.resources[file] = folder() + "/Contents/Resources/" + file;
    }
    void addText(const std::string& table, const std::string& key,
                 const std::string& text) override {
        values_.tables[table][key] = text;
    }
    void addInformation(const std::string& key, const std::string& text) override {
        values_.information[key] = text;
        bundles_.informationByPath[folder()][key] = text;
    }
    std::unique_ptr<Bundle> bundle() override {
        values_.folder = folder();
        return std::make_unique<FakeBundle>(values_);
    }
    Bundles& bundles() override { return bundles_; }

  private:
    FakeBundle values_;
    FakeBundles bundles_;
};

template <class AnyBundle>
std::unique_ptr<BundleScene> makeBundleScene() {
    return std::make_unique<AnyBundle>();
}

}  // namespace

class BundleContract : public Contract<BundleScene> {};

TEST_P(BundleContract, ItsFoldersHaveTheirPlacesWhetherTheyExistOrNot) {
    const auto bundle = scene_->bundle();
    EXPECT_EQ(bundle->resourcesFolder(), scene_->folder() + "/Contents/Resources");
    EXPECT_EQ(bundle->sharedSupportFolder(), scene_->folder() + "/Contents/SharedSupport");
}

TEST_P(BundleContract, AResourceIsFoundByItsNameAndType) {
    const std::string page = scene_->addResource("license.txt");
    const auto bundle = scene_->bundle();
    EXPECT_EQ(bundle->resourcePath("license", "txt"), page);
    EXPECT_EQ(bundle->resourcePath("license", "rtf"), std::nullopt);
    EXPECT_EQ(bundle->resourcePath("missing", "txt"), std::nullopt);
}

TEST_P(BundleContract, ATextIsLookedUpInItsTableOnly) {
    scene_->addText("Localizable", "greeting", "Hello");
    scene_->addText("Localizable", "empty", "");
    scene_->addText("installer", "product_name", "Tool");
    const auto bundle = scene_->bundle();
    EXPECT_EQ(bundle->localizedString("greeting", "Localizable"), "Hello");
    EXPECT_EQ(bundle->localizedString("empty", "Localizable"), "");
    EXPECT_EQ(bundle->localizedString("product_name", "installer"), "Tool");
    EXPECT_EQ(bundle->localizedString("greeting", "installer"), std::nullopt);
    EXPECT_EQ(bundle->localizedString("Greeting", "Localizable"), std::nullopt);
    EXPECT_EQ(bundle->localizedString("greeting", "Missing"), std::nullopt);
    EXPECT_EQ(bundle->localization(), "en");
}

TEST_P(BundleContract, TheInformationHasItsValuesAndNoOthers) {
    scene_->addInformation("CFBundleName", "Tool 2");
    const auto bundle = scene_->bundle();
    EXPECT_EQ(bundle->informationValue("CFBundleName"), "Tool 2");
    EXPECT_EQ(bundle->informationValue("CFBundleVersion"), std::nullopt);
}

TEST_P(BundleContract, ABundleIsOpenedByItsPath) {
    scene_->addInformation("CFBundleName", "Tool 2");
    const auto bundle = scene_->bundles().open(scene_->folder());
    ASSERT_NE(bundle, nullptr);
    EXPECT_EQ(bundle->informationValue("CFBundleName"), "Tool 2");
    EXPECT_EQ(bundle->resourcesFolder(), scene_->folder() + "/Contents/Resources");
    EXPECT_EQ(scene_->bundles().open(scene_->folder() + "/Contents"), nullptr);
    EXPECT_EQ(scene_->bundles().open(scene_->folder() + " missing.app"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Bundle, BundleContract,
    testing::Values(Adapter<BundleScene>{"Linux", makeBundleScene<BundleOnDisk>},
                    Adapter<BundleScene>{"Fake", makeBundleScene<BundleOfValues>}),
    AdapterName());

}  // namespace installer::test
