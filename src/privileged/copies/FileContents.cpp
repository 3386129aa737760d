#include "privileged/copies/FileContents.h"

#include <algorithm>
#include <vector>

#include <unistd.h>

#include "foundation/values/Result.h"
#include "privileged/system/SystemError.h"

namespace installer {

namespace {

/// How much is copied between two calls of the progress: a slow disk takes some 50 ms for it.
constexpr off_t chunkSize = 1 << 20;
constexpr std::size_t bufferSize = 256 << 10;
constexpr off_t statusBlockSize = 512;

bool kernelCannotCopy(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP ||
           error == EPERM || error == ETXTBSY;
}

class ContentsCopy {
  public:
    ContentsCopy(int source, int destination, const CopyProgress& progress)
        : source_(source), destination_(destination), progress_(progress) {}

    /// To the source's end, wherever that is.
    std::error_code copyAll() {
        off_t position = 0;
        for (;;) {
            const auto count = copyThroughBuffer(position, bufferSize);
            if (count.error() == std::errc::interrupted) continue;
            if (!count) return count.error();
            if (count.value() == 0) return {};
            position += count.value();
        }
    }

    std::error_code copyRange(off_t position, off_t end) {
        bool inKernel = true;
        while (position < end) {
            const auto wanted = static_cast<std::size_t>(std::min(chunkSize, end - position));
            auto count =
                inKernel ? copyInKernel(position, wanted) : copyThroughBuffer(position, wanted);
            if (!count && count.error() == std::errc::interrupted) continue;
            // Some file systems say 0 where they cannot.
            if (inKernel &&
                (count ? count.value() == 0 : kernelCannotCopy(count.error().value()))) {
                inKernel = false;
                continue;
            }
            if (!count) return count.error();
            if (count.value() == 0) return {};
            position += count.value();
        }
        return {};
    }

    std::error_code copySparse(off_t size) {
        off_t position = 0;
        while (position < size) {
            const off_t data = lseek(source_, position, SEEK_DATA);
            if (data < 0 && errno == ENXIO) break;
            if (data < 0) return copyRange(position, size);
            const off_t hole = lseek(source_, data, SEEK_HOLE);
            const off_t end = std::min(hole < 0 ? size : hole, size);
            tell(std::min(data, size) - position);
            if (const auto error = copyRange(data, end)) return error;
            position = std::max(std::min(data, size), end);
        }
        tell(size - position);
        return ftruncate(destination_, size) == 0 ? std::error_code() : systemError();
    }

  private:
    Result<off_t> copyInKernel(off_t position, std::size_t wanted) {
        off_t from = position;
        off_t to = position;
        const auto count = copy_file_range(source_, &from, destination_, &to, wanted, 0);
        if (count < 0) return systemError();
        tell(count);
        return off_t{count};
    }

    Result<off_t> copyThroughBuffer(off_t position, std::size_t wanted) {
        buffer_.resize(bufferSize);
        const auto count =
            pread(source_, buffer_.data(), std::min(wanted, buffer_.size()), position);
        if (count < 0) return systemError();
        off_t written = 0;
        while (written < count) {
            const auto now = pwrite(destination_, buffer_.data() + written,
                                    static_cast<std::size_t>(count - written), position + written);
            if (now < 0 && errno == EINTR) continue;
            if (now < 0) return systemError();
            written += now;
        }
        tell(count);
        return off_t{count};
    }

    void tell(off_t count) {
        if (progress_ && count > 0) progress_(static_cast<std::uint64_t>(count));
    }

    int source_;
    int destination_;
    const CopyProgress& progress_;
    std::vector<char> buffer_;
};

}  // namespace

std::error_code copyContents(int source, off_t size, blkcnt_t blocks, int destination,
                             const CopyProgress& progress) {
    ContentsCopy copy(source, destination, progress);
    if (size == 0) return copy.copyAll();
    if (blocks * statusBlockSize < size) return copy.copySparse(size);
    return copy.copyRange(0, size);
}

}  // namespace installer
