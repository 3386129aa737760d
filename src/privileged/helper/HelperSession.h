#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "privileged/helper/AdministratorTools.h"
#include "privileged/protocol/MessageStream.h"

namespace installer {

/// Takes what the run has planned, then answers requests, one after the other, until the peer
/// closes its end.
class HelperSession {
  public:
    HelperSession(int input, int output, AdministratorTools tools)
        : stream_(input, output), tools_(std::move(tools)) {}

    /// Gives the exit status of the process: 0 when the peer closed its end between two messages.
    /// A signal that ends the process does so between two requests, never within one.
    [[nodiscard]] int run();

  private:
    /// Whether the message is a part of the plan that comes in time.
    [[nodiscard]] bool takePlan(const Message& message);
    /// False when the peer is gone.
    [[nodiscard]] bool serve(const ToolRequest& request);
    void copied(std::uint64_t bytes);
    [[nodiscard]] bool sendEnded(AdministratorTools::ExitStatus status);

    MessageStream stream_;
    AdministratorTools tools_;
    std::size_t planMessages_ = 0;
    bool hasServed_ = false;
    std::uint64_t unreported_ = 0;
    std::chrono::steady_clock::time_point lastProgress_;
};

}  // namespace installer
