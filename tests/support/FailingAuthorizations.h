#pragma once

#include <memory>

#include "ports/Authorization.h"
#include "tests/support/Faults.h"

namespace installer::test {

/// Passes everything on to other authorizations, but for the calls that the faults make fail:
/// "create" gives none, "obtain" gives false, and a command fails as the plan says. A tool that
/// fails has done of its work what its counterpart in the helper can have done: `mkdir` may have
/// made the folders above, `cp` is all or nothing and has copied nothing; the others may have done
/// everything.
class FailingAuthorizations : public Authorizations {
  public:
    /// Both outlive this object and the authorizations that it makes.
    FailingAuthorizations(Authorizations& authorizations, Faults& faults)
        : authorizations_(authorizations), faults_(faults) {}

    [[nodiscard]] std::unique_ptr<Authorization> create() override;

  private:
    class Failing;

    Authorizations& authorizations_;
    Faults& faults_;
};

}  // namespace installer::test
