#include "linux/process/SystemClock.h"

#include <thread>

namespace installer {

void SystemClock::sleep(std::chrono::microseconds duration) {
    std::this_thread::sleep_for(duration);
}

std::chrono::nanoseconds SystemClock::now() const {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace installer
