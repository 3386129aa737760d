#pragma once

#include <string>
#include <vector>

#include "tests/support/Faults.h"

namespace installer::test {

/// Every way in which that call can fail, as plans for the place.
[[nodiscard]] std::vector<FaultPlan> faultsOf(const Faults::Call& call, std::size_t place,
                                              Lasting lasting);

/// Which call fails, how, and for how long: the first thing to know of a run that went wrong.
[[nodiscard]] std::string described(const FaultPlan& plan, const Faults::Call& call);

}  // namespace installer::test
