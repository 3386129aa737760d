// The file managers that keep the contract: the one on the real disk and the one in memory.

#include <filesystem>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include "linux/files/LinuxFileManager.h"
#include "tests/ports/FileManagerContract.h"
#include "tests/privileged/trees/Disk.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

namespace {

/// Makes this process an ordinary user for as long as it lives, if it is root.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        if (!wasRoot_) return;
        EXPECT_EQ(setgroups(0, nullptr), 0);
        EXPECT_EQ(setegid(nobody), 0);
        EXPECT_EQ(seteuid(nobody), 0);
    }
    ~OrdinaryUser() { becomeRoot(); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    [[nodiscard]] bool wasRoot() const { return wasRoot_; }

    /// Runs `work` with the rights that the process had before.
    template <class Work>
    void asRoot(const Work& work) const {
        becomeRoot();
        work();
        EXPECT_EQ(seteuid(nobody), 0);
    }

  private:
    static constexpr uid_t nobody = 65534;

    void becomeRoot() const {
        if (!wasRoot_) return;
        EXPECT_EQ(seteuid(0), 0);
        EXPECT_EQ(setegid(0), 0);
    }

    bool wasRoot_ = geteuid() == 0;
};

class LinuxFiles : public FileManagerScene {
  public:
    FileManager& files() override { return files_; }
    std::string path(const std::string& name) const override { return disk_.path(name); }
    void makeFolder(const std::string& name) override { disk_.makeFolder(name); }
    void makeFile(const std::string& name, const std::string& contents) override {
        disk_.makeFile(name, contents);
    }
    void makeLink(const std::string& target, const std::string& name) override {
        disk_.makeLink(target, name);
    }
    void makeHardLink(const std::string& file, const std::string& name) override {
        EXPECT_EQ(::link(path(file).c_str(), path(name).c_str()), 0);
    }
    void makeSpecial(const std::string& name) override { disk_.makeFifo(name); }
    void setPermissions(const std::string& name, std::uint32_t permissions) override {
        disk_.setMode(name, permissions);
    }
    void setModificationDate(const std::string& name, FileTime date) override {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(date.time_since_epoch());
        const timespec time = {seconds.count(), (date.time_since_epoch() - seconds).count()};
        disk_.setTimes(name, time, time);
    }
    void makeUnlistable(const std::string& folder) override { disk_.setMode(folder, 0311); }
    bool makeForeign(const std::string& folder) override {
        if (!user_.wasRoot()) return false;
        user_.asRoot([&] {
            EXPECT_EQ(lchown(path(folder).c_str(), 0, 0), 0);
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path(folder))) {
                EXPECT_EQ(lchown(entry.path().c_str(), 0, 0), 0);
            }
        });
        return true;
    }
    std::string userName() const override { return ::getpwuid(geteuid())->pw_name; }
    std::string groupName() const override { return ::getgrgid(getegid())->gr_name; }
    std::string contents(const std::string& name) override { return disk_.contents(name); }
    std::string linkTarget(const std::string& name) override { return disk_.linkTarget(name); }
    std::vector<std::string> logged() const override { return log_.lines; }

  private:
    // Goes last, with the rights that the process had before.
    Disk disk_;
    OrdinaryUser user_;
    RecordingLog log_;
    LinuxFileManager files_{log_, LinkPolicy::follow};
};

class FilesInMemory : public FileManagerScene {
  public:
    FilesInMemory() { memory_.addFolder("/Users/tester"); }

    FileManager& files() override { return memory_; }
    std::string path(const std::string& name) const override {
        return name.empty() ? "/Users/tester" : "/Users/tester/" + name;
    }
    void makeFolder(const std::string& name) override { memory_.addFolder(path(name)); }
    void makeFile(const std::string& name, const std::string& contents) override {
        memory_.addFile(path(name), contents);
    }
    void makeLink(const std::string& target, const std::string& name) override {
        memory_.addLink(path(name), target);
    }
    void makeHardLink(const std::string& file, const std::string& name) override {
        memory_.addHardLink(path(name), path(file));
    }
    void makeSpecial(const std::string& name) override { memory_.addOther(path(name)); }
    void setPermissions(const std::string& name, std::uint32_t permissions) override {
        EXPECT_FALSE(memory_.setAttributes(path(name), {{}, {}, permissions}));
    }
    void setModificationDate(const std::string& name, FileTime date) override {
        memory_.setModificationDate(path(name), date);
    }
    void makeUnlistable(const std::string& folder) override {
        memory_.makeUnlistable(path(folder));
    }
    bool makeForeign(const std::string& folder) override {
        memory_.setOwnerAsAdministrator(path(folder), "root", "root");
        memory_.makeUnwritable(path(folder));
        return true;
    }
    std::string userName() const override { return "tester"; }
    std::string groupName() const override { return "tester"; }
    std::string contents(const std::string& name) override { return memory_.contents(path(name)); }
    std::string linkTarget(const std::string& name) override {
        return memory_.contents(path(name));
    }
    // It has no log to write into.
    std::vector<std::string> logged() const override { return {}; }

  private:
    MemoryFileManager memory_;
};

template <class Files>
std::unique_ptr<FileManagerScene> makeFileManagerScene() {
    return std::make_unique<Files>();
}

const auto fileManagers =
    testing::Values(FileManagerAdapter{"Linux", makeFileManagerScene<LinuxFiles>},
                    FileManagerAdapter{"Memory", makeFileManagerScene<FilesInMemory>});

}  // namespace

INSTANTIATE_TEST_SUITE_P(FileManager, FileManagerContractLooking, fileManagers, AdapterName());
INSTANTIATE_TEST_SUITE_P(FileManager, FileManagerContractChanging, fileManagers, AdapterName());

}  // namespace installer::test
