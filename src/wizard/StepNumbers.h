#pragma once

#include <cstdint>

namespace installer {

/// The wizard's states. Those with a step of their own are the number under which it is registered.
namespace step_number {
inline constexpr std::int32_t notStarted = -1;  ///< also: given up by going back from the licence
inline constexpr std::int32_t licenseAgreement = 0;
inline constexpr std::int32_t hostSelection = 1;
inline constexpr std::int32_t runningHostCheck = 2;
inline constexpr std::int32_t fileInstallation = 3;
inline constexpr std::int32_t completion = 4;
inline constexpr std::int32_t finished = 5;
}  // namespace step_number

}  // namespace installer
