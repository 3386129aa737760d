#pragma once

#include <string>
#include <system_error>

namespace installer {

/// Makes the folder look like a disk on which that user works: a Photoshop release of each kind
/// that the installer tells apart, and Photoshop Elements, which is never offered. The folder
/// exists. Nothing outside it is touched.
[[nodiscard]] std::error_code fillSampleDisk(const std::string& folder, const std::string& login);

}  // namespace installer
