#pragma once

namespace installer {

/// The beginning of a script whose first three arguments are the folder of what is packed, the name
/// of the entry in it, and the youngest time: writes the archive to the fourth. The order, the
/// owners, the times and who may write do not depend on the machine on which it is made.
inline constexpr const char* archiveCommand =
    "tar --create --file=\"$4\" --format=gnu --sort=name --mtime=@\"$3\" --clamp-mtime "
    "--owner=0 --group=0 --numeric-owner --mode=u+rw,go-w,a+rX --directory=\"$1\" -- \"$2\"\n"
    "gzip -9 --no-name \"$4\"\n";

}  // namespace installer
