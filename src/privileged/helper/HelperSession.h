#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "privileged/helper/AdministratorTools.h"
#include "privileged/helper/HeldSignals.h"
#include "privileged/protocol/MessageStream.h"

namespace installer {

/// Takes what the run has planned, then answers requests, one after the other, until the peer
/// closes its end. The answers to requests that came together go together.
class HelperSession {
  public:
    HelperSession(int input, int output, AdministratorTools tools)
        : stream_(input, output), tools_(std::move(tools)) {}

    /// Gives the exit status of the process: 0 when the peer closed its end between two messages.
    /// A signal that ends the process does so between two requests, never within one, and not
    /// before what was done is answered.
    [[nodiscard]] int run();

  private:
    /// Whether the message is a part of the plan that comes in time.
    [[nodiscard]] bool takePlan(const Message& message);
    /// nullopt if there are no more, or the peer is gone.
    [[nodiscard]] std::optional<Message> nextMessage();
    /// False when the peer is gone.
    [[nodiscard]] bool serve(const ToolRequest& request);
    void copied(std::uint64_t bytes);
    void addEnded(AdministratorTools::ExitStatus status);
    /// False when the peer is gone.
    [[nodiscard]] bool sendAnswers();

    MessageStream stream_;
    AdministratorTools tools_;
    std::size_t planMessages_ = 0;
    bool hasServed_ = false;
    std::string answers_;  ///< that are not sent yet
    std::size_t answerCount_ = 0;
    std::chrono::steady_clock::time_point firstAnswered_;  ///< of those
    std::optional<HeldSignals> held_;  ///< while something is done that is not answered
    bool peerIsGone_ = false;
    std::uint64_t unreported_ = 0;
    std::chrono::steady_clock::time_point lastProgress_;
};

}  // namespace installer
