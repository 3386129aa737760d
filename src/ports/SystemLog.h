#pragma once

#include <string_view>

namespace installer {

/// The system's log of what programs say.
class SystemLog {
  public:
    virtual ~SystemLog() = default;

    /// Adds one line. Control characters in it are made visible, so that no file name can forge a
    /// line of its own.
    virtual void log(std::string_view line) = 0;
};

}  // namespace installer
