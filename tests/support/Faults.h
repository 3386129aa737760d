#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace installer::test {

/// How a privileged command fails.
enum class CommandFault {
    denied,       ///< the launch is refused
    canceled,     ///< the person asked pressed Cancel
    unusable,     ///< the launch fails for another reason, which is no refusal
    exitStatus1,  ///< the tool runs and fails, which nobody is told of
    helperDies,   ///< whoever ran the tool is lost, and with it every later command
};

/// How much of its work a failed call has done all the same. Each call does no more of it than its
/// contract lets a failure do.
enum class AfterEffect { nothing, part, everything };

enum class Lasting {
    once,
    itsKind,     ///< and every later call of the same name
    everything,  ///< and every later call
};

/// What is to go wrong in a run.
struct FaultPlan {
    std::size_t place = 0;  ///< of the first call that fails, counted from 1; 0 for none
    Lasting lasting = Lasting::once;
    AfterEffect afterEffect = AfterEffect::nothing;
    std::errc error = std::errc::io_error;             ///< of an operation on files
    CommandFault command = CommandFault::exitStatus1;  ///< of a privileged command
};

/// Counts the calls of a run, over every decorator that shares this object, and makes those of the
/// plan fail.
class Faults {
  public:
    /// A name, then the arguments: "copy", "/a", "/b", or "/bin/rm", "-fR", "/a".
    using Call = std::vector<std::string>;

    /// Thrown when a run makes more calls than it may: it would go on for ever.
    struct Runaway : std::runtime_error {
        Runaway() : std::runtime_error("the run does not end") {}
    };

    Faults() = default;
    Faults(const FaultPlan& plan, std::size_t limit) : plan_(plan), limit_(limit) {}

    /// Counts the call. The plan when it is to fail, else null.
    const FaultPlan* next(Call call);

    /// Counts a command of which it is clear that it fails.
    void addLost(Call call);

    /// The last call was made to fail by somebody else, on its way.
    void addHit();

    [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
    /// The calls that were made to fail.
    [[nodiscard]] const std::vector<Call>& hits() const { return hits_; }

  private:
    FaultPlan plan_;
    std::size_t limit_ = 100000;
    std::vector<Call> calls_;
    std::vector<Call> hits_;
};

/// The words with a blank between each two.
[[nodiscard]] std::string joined(const Faults::Call& call);

}  // namespace installer::test
