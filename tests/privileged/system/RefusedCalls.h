#pragma once

#include <array>
#include <cstddef>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

namespace installer::test {

/// Makes a system call of this process fail with that error, as an older kernel or another file
/// system would. Nothing lifts it again, so only a child process of a test may call it.
[[nodiscard]] inline bool refuseSystemCall(long number, int error) {
    std::array filter{
        sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
        sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<__u32>(number)},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | static_cast<__u32>(error)},
        sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    };
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace installer::test
