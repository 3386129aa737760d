// How long the search for hosts takes when Photoshop has left 1,000 paths files, against reading
// the same files and listing the same application folders with nothing else done.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

#include "linux/files/LinuxFileManager.h"
#include "steps/hosts/HostsModel.h"
#include "tests/support/FakePlatform.h"

namespace {

namespace fs = std::filesystem;
using installer::test::FakePlatform;

constexpr int pathsFiles = 1000;

/// A home folder with the paths files, and the application folders that they name.
class Disk {
  public:
    Disk() {
        std::string name = (fs::temp_directory_path() / "discovery-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        root_ = name;
        fs::create_directories(preferences());
        for (int number = 0; number < pathsFiles; ++number) {
            const std::string host = "Adobe Photoshop CC 2015." + std::to_string(number);
            fs::create_directories(root_ / "Applications" / host / "Photoshop.app");
            std::ofstream(preferences() / (host + " Paths"))
                << (root_ / "Applications" / host).string() << '\0';
        }
    }
    ~Disk() { fs::remove_all(root_); }
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    [[nodiscard]] std::string home() const { return root_.string(); }
    [[nodiscard]] fs::path preferences() const { return root_ / "Library/Preferences"; }
    [[nodiscard]] fs::path applications() const { return root_ / "Applications"; }

  private:
    fs::path root_;
};

const Disk& disk() {
    static const Disk made;
    return made;
}

void readEveryPathsFile(benchmark::State& state) {
    FakePlatform fake;
    installer::LinuxFileManager files(fake.log);
    const std::string folder = disk().preferences();
    for (auto _ : state) {
        std::size_t read = 0;
        const auto names = files.list(folder);
        for (const std::string& name : names.value()) {
            const auto content = files.read(folder + "/" + name, std::size_t{1} << 16);
            const std::string application = content.value().substr(0, content.value().size() - 1);
            read += files.list(application).value().size();
        }
        if (read != pathsFiles) state.SkipWithError("a paths file was not read");
    }
}

void discoverHosts(benchmark::State& state) {
    FakePlatform fake;
    installer::LinuxFileManager files(fake.log);
    fake.searchPaths.home = disk().home();
    installer::Platform platform = installer::test::platformWith(files, fake);
    for (auto _ : state) {
        const installer::HostsModel hosts(platform);
        if (hosts.foundHosts().size() != pathsFiles) state.SkipWithError("a host was not found");
        fake.log.lines.clear();
    }
}

}  // namespace

BENCHMARK(readEveryPathsFile)->Name("ReadEveryPathsFile")->Unit(benchmark::kMillisecond);
BENCHMARK(discoverHosts)->Name("DiscoverHosts")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
