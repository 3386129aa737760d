#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ports/Authorization.h"
#include "tests/support/MemoryFileManager.h"

namespace installer::test {

/// Authorizations whose tools change a file system in memory as the real ones would, and write
/// what they were asked into a journal as "tool argument argument ...".
class FakeAuthorizations : public Authorizations {
  public:
    /// Both outlive this object.
    FakeAuthorizations(MemoryFileManager& files, std::vector<std::string>& journal)
        : files_(files), journal_(journal) {}

    /// The status a launch gives; asked with the tool and its arguments. Without one, 0.
    std::function<std::int32_t(const std::vector<std::string>&)> status;
    /// Whether a tool that was launched does its work and says so; without one, always.
    std::function<bool(const std::vector<std::string>&)> works;
    /// What a tool writes to its standard output; without one, nothing.
    std::function<std::string(const std::vector<std::string>&)> output;
    /// The largest number of bytes that one read of a tool's output gives.
    std::size_t chunk = 4096;
    /// What `obtain` answers.
    bool obtainable = true;
    /// Why it answers no.
    AuthorizationTrouble trouble = AuthorizationTrouble::none;

    /// Why the administrator keeps out of folders.
    std::map<std::string, LinkRefusal> linkRefusals = {};

    /// What the first authorization answers until its first command.
    bool asks = false;

    int created = 0;    ///< authorizations made so far
    int destroyed = 0;  ///< and of these, those that are gone
    std::vector<std::uint32_t> obtainedFlags;
    /// The tools whose output was read to its end, in order.
    std::vector<std::string> toolsRead;
    ProgressSink* progressSink = nullptr;
    /// What the last run said that it may change. Once it is known, a tool that would change
    /// anything else fails as the real one does, and is listed below.
    std::optional<WriteGrant> grant;
    std::vector<std::string> unplanned;

    [[nodiscard]] std::unique_ptr<Authorization> create() override;
    [[nodiscard]] LinkRefusal linkRefusal(const std::string& folder) const override {
        const auto found = linkRefusals.find(folder);
        return found == linkRefusals.end() ? LinkRefusal::none : found->second;
    }

  private:
    class Fake;
    [[nodiscard]] bool isPlanned(const std::vector<std::string>& command);
    void perform(const std::vector<std::string>& command);

    MemoryFileManager& files_;
    std::vector<std::string>& journal_;
    std::set<std::string> madeFolders_;
};

}  // namespace installer::test
