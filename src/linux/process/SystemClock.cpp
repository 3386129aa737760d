#include "linux/process/SystemClock.h"

#include <thread>

namespace installer {

void SystemClock::sleep(std::chrono::microseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace installer
