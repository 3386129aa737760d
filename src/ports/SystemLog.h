#pragma once

#include <string_view>

namespace installer {

/// The system's log of what programs say.
class SystemLog {
  public:
    virtual ~SystemLog() = default;

    /// Adds one line. One line feed at its end is the line's own end. Other control characters in
    /// it are made visible, so that no file name can forge a line of its own.
    virtual void log(std::string_view line) = 0;
};

}  // namespace installer
