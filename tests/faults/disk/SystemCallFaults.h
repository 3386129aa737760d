#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace installer::test {

/// One system call that the tested code made.
struct SystemCall {
    std::string name;
    bool changesSomething = false;
    bool writes = false;  ///< bytes, and may write fewer than it was given
};

/// What is to go wrong below the adapters.
struct SystemCallPlan {
    enum class Effect {
        none,
        shortWrite,  ///< half of the bytes are written; the writes after it fail
        done,        ///< the call has done its work, and only its success was lost
    };

    std::size_t place = 0;  ///< of the first call that fails, counted from 1; 0 for none
    bool fromThenOn = false;
    int error = 0;
    Effect effect = Effect::none;
};

/// The system calls of this process that change or read files, as the test program's link options
/// redirect them. Those that the C library makes for itself are not among them.
namespace system_call_faults {

/// Whether the kernel copies between files by itself; else copies go through a buffer.
enum class KernelCopies { yes, no };

/// Counts calls from now on, and makes those of the plan fail. `onHit` is told of each.
void arm(const SystemCallPlan& plan, KernelCopies kernelCopies, std::function<void()> onHit);

/// Lets everything pass again, and gives the calls since `arm`.
[[nodiscard]] std::vector<SystemCall> disarm();

}  // namespace system_call_faults

}  // namespace installer::test
