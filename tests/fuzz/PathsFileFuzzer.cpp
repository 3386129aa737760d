// The discovery of hosts by their paths files, read by the real file manager, with and without a
// target volume. Input: the file's name, its contents.

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "hosts/HostDiscovery.h"
#include "hosts/HostLists.h"
#include "hosts/HostModel.h"
#include "hosts/PhotoshopHostModel.h"
#include "linux/files/LinuxFileManager.h"
#include "linux/files/LinuxSearchPaths.h"
#include "privileged/system/FileDescriptor.h"
#include "tests/fuzz/FuzzInput.h"
#include "tests/support/FakePlatform.h"

namespace {

using namespace installer;
using fuzz::require;

const std::string volume = "/Volumes/Other";

/// Folders in memory; the contents of every file are those of one real file.
class Disk : public test::MemoryFileManager {
  public:
    explicit Disk(const std::string& contents) : file_(::memfd_create("paths", MFD_CLOEXEC)) {
        require(::write(file_.get(), contents.data(), contents.size()) ==
                static_cast<ssize_t>(contents.size()));
    }
    Result<std::string> read(const std::string& path, std::size_t limit) override {
        if (!exists(path)) return MemoryFileManager::read(path, limit);
        return files_.read("/proc/self/fd/" + std::to_string(file_.get()), limit);
    }

  private:
    FileDescriptor file_;
    test::RecordingLog log_;
    LinuxFileManager files_{log_};
};

class Scene {
  public:
    Scene(const std::string& name, const std::string& contents, bool onVolume)
        : disk_(contents), searchPaths_(values(onVolume)) {
        const std::string preferences = searchPaths_.userPreferencesFolder().value();
        file_ = joinPath(preferences, name);
        disk_.addFile(file_);
        disk_.addFile(joinPath(preferences, "Adobe Photoshop CC 2019 Settings"));
        for (const char* folder : {"/Applications/Photoshop", "/a"}) {
            disk_.addFolder(searchPaths_.onTargetVolume(folder) + "/Photoshop.app");
        }
    }

    Platform platform() {
        Platform made = fake_.platform;
        return {disk_,          made.fileQueries,  made.authorizations, made.processes,
                made.eventLoop, made.preferences,  made.bundle,         made.bundles,
                searchPaths_,   made.applications, made.alerts,         made.log,
                made.clock,     made.notifications};
    }
    const std::string& file() const { return file_; }
    test::FakePlatform& fake() { return fake_; }
    Disk& disk() { return disk_; }

  private:
    static LinuxSearchPaths::Values values(bool onVolume) {
        LinuxSearchPaths::Values values;
        values.home = "/Users/tester";
        values.loginName = "tester";
        if (onVolume) values.targetVolume = volume;
        return values;
    }

    test::FakePlatform fake_;
    Disk disk_;
    LinuxSearchPaths searchPaths_;
    std::string file_;
};

bool isFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= 255 &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

/// A path that a file named lies on the volume, whatever the file says. One that is not absolute
/// names nothing.
void checkPath(const std::string& path, bool onVolume) {
    require(isUtf8(path));
    if (!path.starts_with('/')) return;
    require(path.find("//") == std::string::npos);
    if (!onVolume) return;
    require(path == volume || path.starts_with(volume + "/"));
    for (const std::string& name : split(path, '/')) require(name != "..");
}

void checkHost(const PhotoshopHostModel& host, Scene& scene, bool onVolume, bool isTooShort) {
    for (const std::string& path :
         {host.appPath(), host.plugInPath(), host.scriptsPath(), host.panelsPath()}) {
        checkPath(path, onVolume);
        if (isTooShort) require(path.empty());
    }
    require(host.appPath().empty() == host.scriptsPath().empty());
    require(host.plugInPath().empty() == host.panelsPath().empty());
    if (!host.hostIsInstalled()) return;
    require(host.appPath().starts_with('/') && !host.plugInPath().empty());
    const auto names = scene.disk().list(host.appPath());
    require(names && std::ranges::any_of(names.value(), [](const std::string& name) {
                return name.ends_with(".app");
            }));
}

void checkDiscovery(Platform& platform) {
    std::uint64_t order = 0;
    for (const HostModel& found : foundHosts(HostDiscovery(platform).discoverHosts())) {
        const auto* host = found.as<PhotoshopHostModel>();
        require(host != nullptr && host->hostIsInstalled() && !host->isElements());
        require(host->version() >= 6 && host->displaySortOrder() >= order);
        order = host->displaySortOrder();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> parts = fuzz::parts(fuzz::textOf(data, size), 2);
    const std::string name = isFileName(parts[0]) ? parts[0] : "Adobe Photoshop CS6 Paths";
    for (const bool onVolume : {false, true}) {
        Scene scene(name, parts[1], onVolume);
        Platform platform = scene.platform();
        const auto host = PhotoshopHostModel::initWithPathsFilePath(platform, scene.file());
        checkHost(host, scene, onVolume, parts[1].size() <= 7);
        // A file that can be read is read at once.
        require(scene.fake().clock.sleeps.empty());
        checkDiscovery(platform);
    }
    return 0;
}
