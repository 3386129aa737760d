#pragma once

#include <chrono>
#include <cstdint>

#include "privileged/helper/AdministratorTools.h"
#include "privileged/protocol/MessageStream.h"

namespace installer {

/// Answers requests, one after the other, until the peer closes its end.
class HelperSession {
  public:
    HelperSession(int input, int output, InvokingUser user, ProtectedFolders folders)
        : stream_(input, output), tools_(std::move(user), std::move(folders)) {}

    /// Gives the exit status of the process: 0 when the peer closed its end between two messages.
    /// A signal that ends the process does so between two requests, never within one.
    [[nodiscard]] int run();

  private:
    using ExitStatus = AdministratorTools::ExitStatus;

    /// False when the peer is gone.
    [[nodiscard]] bool serve(const ToolRequest& request);
    void copied(std::uint64_t bytes);
    [[nodiscard]] bool sendEnded(ExitStatus status);

    MessageStream stream_;
    AdministratorTools tools_;
    std::uint64_t unreported_ = 0;
    std::chrono::steady_clock::time_point lastProgress_;
};

}  // namespace installer
