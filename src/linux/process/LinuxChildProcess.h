#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ports/ChildProcess.h"
#include "ports/DescriptorWatcher.h"

namespace installer {

/// Starts programs of the current user. They get /dev/null as their standard input, pipes as their
/// standard output and error, this process's environment, every signal at its default, and no
/// other descriptor. Their end is watched for each by itself: processes that others started are
/// never waited for.
class LinuxChildProcesses : public ChildProcesses {
  public:
    explicit LinuxChildProcesses(DescriptorWatcher& watcher) : watcher_(watcher) {}

    [[nodiscard]] std::unique_ptr<ChildProcess> create(
        const std::string& path, const std::vector<std::string>& arguments) override;

  private:
    DescriptorWatcher& watcher_;
};

}  // namespace installer
