#pragma once

#include <array>
#include <optional>

#include <signal.h>
#include <termios.h>

namespace installer {

/// Lives while another program asks on this process's terminal, which is its standard input. An
/// interrupt from the keyboard then is an answer: it ends whoever asks and not this process.
/// Afterwards the terminal is as it was, even if who asked died and left it hiding what is typed.
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
