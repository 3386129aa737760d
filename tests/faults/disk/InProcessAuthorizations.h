#pragma once

#include <memory>
#include <utility>

#include <sys/types.h>

#include "ports/Authorization.h"
#include "privileged/wall/ProtectedFolders.h"

namespace installer::test {

/// The privileged helper's work without its process: each command goes through the policy and is
/// done at once, as root. For a process that is root, whoever it acts as meanwhile.
class InProcessAuthorizations : public Authorizations {
  public:
    InProcessAuthorizations(uid_t user, ProtectedFolders folders)
        : user_(user), folders_(std::move(folders)) {}

    [[nodiscard]] std::unique_ptr<Authorization> create() override;

  private:
    class InProcess;

    uid_t user_;
    ProtectedFolders folders_;
};

/// Makes this process act as the user, or as root again, in everything that it does with files.
void actAs(uid_t user);

}  // namespace installer::test
