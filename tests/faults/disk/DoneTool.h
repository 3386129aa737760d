#pragma once

#include <string_view>

#include "ports/Authorization.h"

namespace installer::test {

/// A tool that has ended and wrote nothing.
class DoneTool : public PrivilegedTool {
  public:
    explicit DoneTool(bool succeeded) : succeeded_(succeeded) {}
    void waitUntilEnded() override {}
    std::size_t readOutput(std::span<char> /*buffer*/) override { return 0; }
    [[nodiscard]] bool hasSucceeded() const override { return succeeded_; }

  private:
    bool succeeded_;
};

/// The refresh of the application database: that of the running system, which is no business of a
/// test.
[[nodiscard]] inline bool isOfTheSystem(std::string_view tool) {
    return tool.ends_with("/lsregister");
}

}  // namespace installer::test
