#include "tools/mkinstaller/packing/BundleArchive.h"

namespace installer {

namespace {

constexpr const char* archive =
    "tar --create --file=\"$4\" --format=gnu --sort=name --mtime=@\"$3\" --clamp-mtime "
    "--owner=0 --group=0 --numeric-owner --mode=u+rw,go-w,a+rX --directory=\"$1\" -- \"$2\"\n";

// Several threads would show in what the compression writes.
constexpr const char* withGzip = "gzip -9 --no-name --stdout \"$4\" > \"$4.packed\"\n";
constexpr const char* withZstd =
    "zstd -19 --single-thread --quiet --stdout \"$4\" > \"$4.packed\"\n";

}  // namespace

std::string programOf(Compression compression) {
    return compression == Compression::zstd ? "zstd" : "gzip";
}

std::string archiveCommand(Compression compression) {
    return std::string(archive) + (compression == Compression::zstd ? withZstd : withGzip);
}

}  // namespace installer
