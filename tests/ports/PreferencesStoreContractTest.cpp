// What every store of settings promises.

#include <filesystem>
#include <optional>
#include <string>

#include "linux/files/LinuxSearchPaths.h"
#include "linux/settings/LinuxPreferencesStore.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// The settings of a user, as one process has them.
class PreferencesScene {
  public:
    virtual ~PreferencesScene() = default;
    [[nodiscard]] virtual PreferencesStore& store() = 0;
    /// What another process reads from the disk now.
    [[nodiscard]] virtual std::optional<PreferenceValue> onDisk(const std::string& domain,
                                                                const std::string& key) = 0;
    /// Another process stores a value on the disk.
    virtual void storeElsewhere(const std::string& domain, const std::string& key,
                                const PreferenceValue& value) = 0;
    virtual void setCanWrite(bool canWrite) = 0;
};

namespace {

class SettingsOnDisk : public PreferencesScene {
  public:
    PreferencesStore& store() override { return store_; }
    std::optional<PreferenceValue> onDisk(const std::string& domain,
                                          const std::string& key) override {
        return LinuxPreferencesStore(paths(), log_).value(domain, key);
    }
    void storeElsewhere(const std::string& domain, const std::string& key,
                        const PreferenceValue& value) override {
        LinuxPreferencesStore other(paths(), log_);
        other.setValue(domain, key, value);
        EXPECT_TRUE(other.synchronize(domain));
    }
    /// A file in the folder's place, so that root cannot write either.
    void setCanWrite(bool canWrite) override {
        const std::string library = home_.at("Library");
        const std::string aside = home_.at("aside");
        if (canWrite) {
            std::filesystem::remove(library);
            std::filesystem::rename(aside, library);
        } else {
            home_.addFolder("Library");
            std::filesystem::rename(library, aside);
            home_.add("Library", "in the way");
        }
    }

  private:
    [[nodiscard]] LinuxSearchPaths paths() const {
        LinuxSearchPaths::Values values;
        values.home = home_.path();
        return LinuxSearchPaths(values);
    }

    ScratchFolder home_;
    RecordingLog log_;
    LinuxPreferencesStore store_{paths(), log_};
};

class SettingsInMemory : public PreferencesScene {
  public:
    PreferencesStore& store() override { return store_; }
    std::optional<PreferenceValue> onDisk(const std::string& domain,
                                          const std::string& key) override {
        const auto found = store_.onDisk.find({domain, key});
        if (found == store_.onDisk.end()) return std::nullopt;
        return found->second;
    }
    void storeElsewhere(const std::string& domain, const std::string& key,
                        const PreferenceValue& value) override {
        store_.onDisk[{domain, key}] = value;
        store_.values[{domain, key}] = value;
    }
    void setCanWrite(bool canWrite) override { store_.canWrite = canWrite; }

  private:
    FakePreferencesStore store_;
};

template <class Settings>
std::unique_ptr<PreferencesScene> makePreferencesScene() {
    return std::make_unique<Settings>();
}

}  // namespace

class PreferencesStoreContract : public Contract<PreferencesScene> {
  protected:
    static constexpr const char* domain = "com.example.installer";

    PreferencesStore& store() { return scene_->store(); }
    std::optional<PreferenceValue> onDisk(const std::string& key) {
        return scene_->onDisk(domain, key);
    }
};

TEST_P(PreferencesStoreContract, AValueIsSeenAtOnceAndOnTheDiskAfterSynchronize) {
    EXPECT_EQ(store().value(domain, "path"), std::nullopt);
    store().setValue(domain, "path", "/Plug Ins/日本");
    EXPECT_EQ(store().value(domain, "path"), PreferenceValue("/Plug Ins/日本"));
    EXPECT_EQ(onDisk("path"), std::nullopt);
    EXPECT_TRUE(store().synchronize(domain));
    EXPECT_EQ(onDisk("path"), PreferenceValue("/Plug Ins/日本"));
    EXPECT_EQ(store().value(domain, "path"), PreferenceValue("/Plug Ins/日本"));
}

TEST_P(PreferencesStoreContract, EachTypeIsKept) {
    store().setValue(domain, "flag", false);
    store().setValue(domain, "number", std::int64_t{-7});
    store().setValue(domain, "real", 2.5);
    store().setValue(domain, "text", "");
    EXPECT_TRUE(store().synchronize(domain));
    EXPECT_EQ(onDisk("flag"), PreferenceValue(false));
    EXPECT_EQ(onDisk("number"), PreferenceValue(std::int64_t{-7}));
    EXPECT_EQ(onDisk("real"), PreferenceValue(2.5));
    EXPECT_EQ(onDisk("text"), PreferenceValue(std::string()));
}

TEST_P(PreferencesStoreContract, ARemovedKeyIsGoneAtOnceAndFromTheDiskAfterSynchronize) {
    scene_->storeElsewhere(domain, "path", "/old");
    store().setValue(domain, "path", std::nullopt);
    EXPECT_EQ(store().value(domain, "path"), std::nullopt);
    EXPECT_EQ(onDisk("path"), PreferenceValue("/old"));
    EXPECT_TRUE(store().synchronize(domain));
    EXPECT_EQ(onDisk("path"), std::nullopt);
}

TEST_P(PreferencesStoreContract, KeysThatThisProcessDidNotSetKeepWhatTheDiskSays) {
    scene_->storeElsewhere(domain, "theirs", "before");
    store().setValue(domain, "mine", "mine");
    scene_->storeElsewhere(domain, "theirs", "after");
    EXPECT_EQ(store().value(domain, "theirs"), PreferenceValue("after"));
    EXPECT_TRUE(store().synchronize(domain));
    EXPECT_EQ(onDisk("theirs"), PreferenceValue("after"));
    EXPECT_EQ(onDisk("mine"), PreferenceValue("mine"));
}

TEST_P(PreferencesStoreContract, DomainsDoNotShareTheirValues) {
    store().setValue(domain, "path", "/one");
    store().setValue("com.example.other", "path", "/other");
    EXPECT_TRUE(store().synchronize(domain));
    EXPECT_EQ(onDisk("path"), PreferenceValue("/one"));
    EXPECT_EQ(scene_->onDisk("com.example.other", "path"), std::nullopt);
    EXPECT_EQ(store().value("com.example.other", "path"), PreferenceValue("/other"));
}

TEST_P(PreferencesStoreContract, AFailureKeepsTheValuesForTheNextTime) {
    store().setValue(domain, "path", "/kept");
    scene_->setCanWrite(false);
    EXPECT_FALSE(store().synchronize(domain));
    EXPECT_EQ(store().value(domain, "path"), PreferenceValue("/kept"));
    scene_->setCanWrite(true);
    EXPECT_EQ(onDisk("path"), std::nullopt);
    EXPECT_TRUE(store().synchronize(domain));
    EXPECT_EQ(onDisk("path"), PreferenceValue("/kept"));
}

TEST_P(PreferencesStoreContract, WhereNothingWasSetThereIsNothingThatCouldFail) {
    scene_->setCanWrite(false);
    EXPECT_TRUE(store().synchronize(domain));
    scene_->setCanWrite(true);
    store().setValue(domain, "path", "/x");
    EXPECT_TRUE(store().synchronize(domain));
    scene_->setCanWrite(false);
    EXPECT_TRUE(store().synchronize(domain));
}

INSTANTIATE_TEST_SUITE_P(
    PreferencesStore, PreferencesStoreContract,
    testing::Values(Adapter<PreferencesScene>{"Linux", makePreferencesScene<SettingsOnDisk>},
                    Adapter<PreferencesScene>{"Memory", makePreferencesScene<SettingsInMemory>}),
    AdapterName());

}  // namespace installer::test
