#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ports/ChildProcess.h"
#include "tests/support/FakeEventLoop.h"

namespace installer::test {

/// Processes of the programs that a test has put into `programs`, and of no others. What they do
/// happens while the loop turns.
class FakeChildProcesses : public ChildProcesses {
  public:
    /// What a program writes before it ends, one step in each turn of the loop.
    using Program = std::vector<std::pair<ChildProcess::Pipe, std::string>>;

    /// The loop outlives this object and its processes.
    explicit FakeChildProcesses(FakeEventLoop& loop) : loop_(loop) {}

    std::map<std::string, Program> programs;  ///< by path

    std::unique_ptr<ChildProcess> create(const std::string& path,
                                         const std::vector<std::string>& arguments) override;

  private:
    FakeEventLoop& loop_;
};

}  // namespace installer::test
