#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

namespace installer::test {

/// A new folder on the real disk that only its maker can change. It is removed with all that is in
/// it when the object is destroyed. Names are relative to it.
class ScratchFolder {
  public:
    explicit ScratchFolder(
        const std::string& parent = std::filesystem::temp_directory_path().string()) {
        std::string name = parent + "/installer-test-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) std::abort();
        path_ = name;
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string at(const std::string& below) const { return path_ + "/" + below; }
    [[nodiscard]] std::string operator/(const std::string& below) const { return at(below); }
    /// Whether there is an entry of that name, a dangling link too.
    [[nodiscard]] bool holds(const std::string& below) const {
        return std::filesystem::exists(std::filesystem::symlink_status(at(below)));
    }

    std::string addFolder(const std::string& below) const {
        std::filesystem::create_directories(at(below));
        return at(below);
    }
    std::string add(const std::string& below, std::string_view contents) const {
        std::filesystem::create_directories(std::filesystem::path(at(below)).parent_path());
        std::ofstream(at(below), std::ios::binary) << contents;
        return at(below);
    }
    std::string addFifo(const std::string& below) const {
        std::filesystem::create_directories(std::filesystem::path(at(below)).parent_path());
        EXPECT_EQ(::mkfifo(at(below).c_str(), 0666), 0);
        return at(below);
    }
    /// A file of that many bytes that takes no room on the disk.
    std::string addSparse(const std::string& below, std::uintmax_t size) const {
        add(below, "");
        std::filesystem::resize_file(at(below), size);
        return at(below);
    }

    [[nodiscard]] std::string read(const std::string& below) const {
        std::ifstream file(at(below), std::ios::binary);
        std::ostringstream contents;
        contents << file.rdbuf();
        return contents.str();
    }
    [[nodiscard]] std::vector<std::string> names(const std::string& below) const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(at(below)))
            found.push_back(entry.path().filename().string());
        return found;
    }

  private:
    std::string path_;
};

}  // namespace installer::test
