#pragma once

#include <cstdint>

namespace installer {

/// The wizard's states. The state of a step is the number under which the step is registered.
namespace step_number {
inline constexpr std::int32_t notStarted = -1;  ///< also after Back in the licence step
inline constexpr std::int32_t licenseAgreement = 0;
inline constexpr std::int32_t hostSelection = 1;
inline constexpr std::int32_t runningHostCheck = 2;
inline constexpr std::int32_t fileInstallation = 3;
inline constexpr std::int32_t completion = 4;
inline constexpr std::int32_t finished = 5;
}  // namespace step_number

}  // namespace installer
