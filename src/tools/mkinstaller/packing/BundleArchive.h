#pragma once

#include <string>

namespace installer {

/// How an archive is compressed: every system reads the first, the second unpacks faster.
enum class Compression { gzip, zstd };

/// The name of the program that compresses, and with "-dc" takes the compression away again.
[[nodiscard]] std::string programOf(Compression compression);

/// The beginning of a script whose first three arguments are the folder of what is packed, the name
/// of the entry in it, and the youngest time: writes the archive to the fourth, and compressed to
/// the fourth with ".packed" behind it. The order, the owners, the times and who may write do not
/// depend on the machine on which it is made.
[[nodiscard]] std::string archiveCommand(Compression compression);

}  // namespace installer
