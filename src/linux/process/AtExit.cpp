#include "linux/process/AtExit.h"

#include <cstdlib>
#include <utility>

namespace installer {

namespace {

/// Never destroyed: the process may end while this file's other objects already have.
std::function<void()>& functionAtExit() {
    static auto* const function = new std::function<void()>();
    return *function;
}

void runFunction() {
    const std::function<void()> function = std::exchange(functionAtExit(), nullptr);
    if (function) function();
}

}  // namespace

AtExit::AtExit(std::function<void()> function) {
    static const bool isRegistered = std::atexit(runFunction) == 0;
    if (isRegistered) functionAtExit() = std::move(function);
}

AtExit::~AtExit() {
    functionAtExit() = nullptr;
}

}  // namespace installer
