#pragma once

#include <array>
#include <optional>

#include <signal.h>
#include <termios.h>

namespace installer {

/// Lives while another program asks on this process's terminal, which is its standard input. An
/// keyboard interrupt then ends that program and not this process. The destructor restores the
/// terminal's settings, even if that program died and left the echo off.
class TerminalQuestion {
  public:
    TerminalQuestion();
    ~TerminalQuestion();
    TerminalQuestion(const TerminalQuestion&) = delete;
    TerminalQuestion& operator=(const TerminalQuestion&) = delete;

  private:
    static constexpr std::array interrupts = {SIGINT, SIGQUIT};

    std::optional<termios> settings_;
    std::array<struct sigaction, interrupts.size()> before_{};
};

}  // namespace installer
