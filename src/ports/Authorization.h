#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/values/WriteGrant.h"
#include "ports/ProgressSink.h"

namespace installer {

/// Statuses of `Authorization::execute`; 0 is success.
namespace authorization_status {
inline constexpr std::int32_t denied = -60005;  ///< refused, no way to ask, or the helper was lost
inline constexpr std::int32_t canceled = -60006;           ///< the person asked pressed Cancel
inline constexpr std::int32_t toolNotExecutable = -60031;  ///< its arguments cannot be passed on
}  // namespace authorization_status

/// Why nobody can become the administrator.
enum class AuthorizationTrouble {
    none,
    noWay,           ///< the machine has no program that asks for the right
    helperUnusable,  ///< the program that would act as the administrator is missing or damaged
};

/// A tool that was started as the administrator. Destroying it neither waits for nor ends it.
class PrivilegedTool {
  public:
    virtual ~PrivilegedTool() = default;

    /// Waits until the tool has ended.
    virtual void waitUntilEnded() = 0;

    /// Reads what the tool wrote to its standard output: some bytes, at least one, or 0 at the
    /// end. Blocks until there is one or the other.
    [[nodiscard]] virtual std::size_t readOutput(std::span<char> buffer) = 0;

    /// 0, or `denied` once it is known that the process that ran the tool was lost before the
    /// tool's end. This is not the tool's exit status.
    [[nodiscard]] virtual std::int32_t status() const { return 0; }

    /// Whether the tool has ended and said that it succeeded.
    [[nodiscard]] virtual bool hasSucceeded() const = 0;
};

/// The result of a start as the administrator: `tool` is set if `status` is 0.
struct PrivilegedLaunch {
    std::int32_t status = 0;
    std::unique_ptr<PrivilegedTool> tool;
};

/// The right to act as the administrator for one run. Made by `Authorizations`; destroying it
/// gives the right back. Blocks its caller while it asks and while it runs tools.
class Authorization {
  public:
    /// Ask for further rights when they are needed. The only flag that the installer uses.
    static constexpr std::uint32_t extendRights = 2;

    virtual ~Authorization() = default;

    /// Prepares the right, without asking anybody: credentials are asked for at the first
    /// `execute`. False when this machine has no way to become the administrator at all.
    [[nodiscard]] virtual bool obtain(std::uint32_t flags) = 0;

    /// Says what this run may change. The person who is asked is shown the folders, and a tool that
    /// would change anything else does nothing and reports a failure. Before the first call nothing
    /// may be changed. Another grant than the one that somebody has agreed to ends the right, and
    /// the next `execute` asks again.
    virtual void limitTo(const WriteGrant& grant) = 0;

    /// Why `obtain` has given false the last time.
    [[nodiscard]] virtual AuthorizationTrouble trouble() const {
        return AuthorizationTrouble::none;
    }

    /// Whether the next `execute` may ask somebody for credentials.
    [[nodiscard]] virtual bool mayAskNow() const { return false; }

    /// Starts the tool at the absolute path with the arguments, as they are: no shell. Tools run
    /// one after the other, in the order of these calls, whether or not somebody waits for them.
    /// One that follows another may begin only when somebody waits for it or for a later one, or
    /// when this object is destroyed. The first call asks for the credentials, which hold until
    /// this object is destroyed; a refusal is remembered, so that the user is not asked twice.
    [[nodiscard]] virtual PrivilegedLaunch execute(const std::string& tool,
                                                   const std::vector<std::string>& arguments) = 0;

    /// Tells `progress` of the bytes that administrator's copies move, and of 0 bytes many times
    /// a second while a call of this object or of its tools waits: for the credentials, for a
    /// tool, for the end of what ran the tools. Null ends that. Until then it outlives this object.
    virtual void setProgressSink(ProgressSink* progress) = 0;
};

/// Why nothing can be put into a folder to which a link leads.
enum class LinkRefusal {
    none,
    ofAnotherUser,  ///< the link belongs to another user, who could lead it anywhere
    intoSystem,     ///< it leads into a folder of the system
};

/// Where authorizations come from.
class Authorizations {
  public:
    virtual ~Authorizations() = default;
    [[nodiscard]] virtual std::unique_ptr<Authorization> create() = 0;

    /// Whether a run would put nothing into the folder, because the administrator does not go
    /// where a link on the way to it leads. `none` where the user needs no administrator.
    [[nodiscard]] virtual LinkRefusal linkRefusal(const std::string& /*folder*/) const {
        return LinkRefusal::none;
    }
};

}  // namespace installer
