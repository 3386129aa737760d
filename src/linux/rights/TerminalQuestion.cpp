#include "linux/rights/TerminalQuestion.h"

#include <unistd.h>

namespace installer {

TerminalQuestion::TerminalQuestion() {
    termios settings{};
    if (::tcgetattr(STDIN_FILENO, &settings) == 0) settings_ = settings;
    struct sigaction ignored{};
    ignored.sa_handler = SIG_IGN;
    for (std::size_t index = 0; index < interrupts.size(); ++index) {
        ::sigaction(interrupts[index], &ignored, &before_[index]);
    }
}

TerminalQuestion::~TerminalQuestion() {
    // In the background the attempt alone would stop this process.
    if (settings_ && ::tcgetpgrp(STDIN_FILENO) == ::getpgrp()) {
        ::tcsetattr(STDIN_FILENO, TCSADRAIN, &*settings_);
    }
    for (std::size_t index = 0; index < interrupts.size(); ++index) {
        ::sigaction(interrupts[index], &before_[index], nullptr);
    }
}

}  // namespace installer
