#include "product/SystemReason.h"

#include <array>
#include <cerrno>

#include "product/LocalizedText.h"

namespace installer {

namespace {

struct Reason {
    int error;
    const char* key;
};

constexpr std::array reasons = {
    Reason{ENOSPC, "reason_disk_full"},
#ifdef EDQUOT
    Reason{EDQUOT, "reason_quota_used_up"},
#endif
    Reason{EROFS, "reason_read_only"},
    Reason{EACCES, "reason_no_access"},
    Reason{EPERM, "reason_not_permitted"},
    Reason{EIO, "reason_disk_error"},
    Reason{ENOENT, "reason_missing"},
    Reason{ENOTDIR, "reason_no_folder"},
    Reason{ETXTBSY, "reason_in_use"},
    Reason{ELOOP, "reason_links"},
    Reason{ENAMETOOLONG, "reason_name_too_long"},
    Reason{EFBIG, "reason_file_too_large"},
};

}  // namespace

std::string systemReason(const Bundle& bundle, const std::error_code& error) {
    for (const Reason& reason : reasons) {
        // The system's own errors and the standard's are told apart, though their numbers are the
        // same.
        const bool isMeant = error == std::error_code(reason.error, std::system_category()) ||
                             error == std::error_code(reason.error, std::generic_category());
        if (isMeant) return localizedText(bundle, reason.key, error.message());
    }
    return error.message();
}

}  // namespace installer
