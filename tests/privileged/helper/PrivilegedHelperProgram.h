#pragma once

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/privileged/helper/HelperProcess.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

constexpr uid_t nobody = 65534;

inline std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::string procFile(const HelperProcess& helper, const std::string& name) {
    return "/proc/" + std::to_string(helper.process()) + "/" + name;
}

inline HelperProcess::Start withEnvironment(std::vector<std::string> environment) {
    HelperProcess::Start start;
    start.environment = std::move(environment);
    return start;
}

inline HelperProcess::Start afterDoing(std::function<void()> before) {
    HelperProcess::Start start;
    start.before = std::move(before);
    return start;
}

/// A test of the real helper, with a folder to work in.
class PrivilegedHelperProgram : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: the helper's tests must run as root";
    }
    ScratchFolder folder;
};

}  // namespace installer::test
