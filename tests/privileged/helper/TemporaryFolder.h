#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace installer::test {

/// A folder of a test's own that only root can change, removed with all that is in it.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::string& parent = "/tmp") {
        std::string name = parent + "/installer-test-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const {
        return path_ + "/" + name;
    }
    [[nodiscard]] const std::string& path() const { return path_; }

    void write(const std::string& name, const std::string& contents) const {
        std::filesystem::create_directories(
            std::filesystem::path(path_ + "/" + name).parent_path());
        std::ofstream(path_ + "/" + name, std::ios::binary) << contents;
    }
    [[nodiscard]] bool holds(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(path_ + "/" + name));
    }

  private:
    std::string path_;
};

}  // namespace installer::test
