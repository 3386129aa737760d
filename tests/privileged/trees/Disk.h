#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "tests/support/ScratchFolder.h"

namespace installer::test {

/// A folder on the real disk that lives as long as the test, with short ways to fill it and to
/// look at it. Names are relative to it. What a test needs of the system and does not get is a
/// failure of the test.
class Disk {
  public:
    Disk();
    ~Disk();
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    [[nodiscard]] std::string path(const std::string& name = "") const;

    void makeFolder(const std::string& name, mode_t mode = 0755) const;
    void makeFile(const std::string& name, const std::string& contents = "",
                  mode_t mode = 0644) const;
    void makeLink(const std::string& target, const std::string& name) const;
    void makeFifo(const std::string& name) const;
    void makeSocket(const std::string& name) const;
    void setMode(const std::string& name, mode_t mode) const;
    /// Sets access and modification time, a link's own.
    void setTimes(const std::string& name, timespec accessed, timespec modified) const;
    void setAttribute(const std::string& name, const char* attribute,
                      const std::string& value) const;

    [[nodiscard]] bool exists(const std::string& name) const;
    [[nodiscard]] struct stat status(const std::string& name) const;
    [[nodiscard]] mode_t mode(const std::string& name) const;
    [[nodiscard]] std::string contents(const std::string& name) const;
    [[nodiscard]] std::string linkTarget(const std::string& name) const;
    /// An empty text when there is none.
    [[nodiscard]] std::string attribute(const std::string& name, const char* attribute) const;
    /// The names in the folder, sorted, hidden ones too.
    [[nodiscard]] std::vector<std::string> names(const std::string& folder = "") const;

  private:
    ScratchFolder folder_;
};

/// Runs `work` in a child process, as a user without any rights where this one is root, and gives
/// what it returned ("" for success is the custom). Text in angle brackets tells how it died.
[[nodiscard]] std::string asOrdinaryUser(const std::function<std::string()>& work);

/// The same in a child with this process's own rights.
[[nodiscard]] std::string inChild(const std::function<std::string()>& work);

/// Changes the process's mask for as long as it lives.
class Mask {
  public:
    explicit Mask(mode_t mask) : previous_(umask(mask)) {}
    ~Mask() { umask(previous_); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

  private:
    mode_t previous_;
};

}  // namespace installer::test
