#pragma once

#include <memory>

#include <sys/types.h>

#include "ports/Authorization.h"
#include "privileged/wall/ProtectedFolders.h"

namespace installer::test {

/// Authorizations whose commands are done by the helper's own session, as root, in a process that
/// is forked off this one: like the privileged helper it remembers nothing of what this process
/// has done. Made while this process is root.
class ForkedHelper : public Authorizations {
  public:
    ForkedHelper(uid_t user, const ProtectedFolders& folders);
    ~ForkedHelper() override;
    ForkedHelper(const ForkedHelper&) = delete;
    ForkedHelper& operator=(const ForkedHelper&) = delete;

    [[nodiscard]] std::unique_ptr<Authorization> create() override;

  private:
    class Forked;

    int connection_ = -1;
    pid_t process_ = -1;
};

}  // namespace installer::test
