#pragma once

#include <string>
#include <vector>

#include "ports/Authorization.h"
#include "tools/installerctl/records/RecordedRemoval.h"

namespace installer {

/// Lets the administrator change the entry at the path.
void addPlace(const std::string& path, WriteGrant& grant);

/// Removes recorded entries, as this process may, else through the administrator.
class Remover {
  public:
    /// `rights` may be null: then what this process may not remove fails.
    Remover(LinkPolicy links, Authorization* rights) : links_(links), rights_(rights) {}

    [[nodiscard]] RemovalOutcome remove(const std::string& path,
                                        const EntryMap::Alternatives& records);
    [[nodiscard]] RemovalOutcome removeFolder(const std::string& path);

    /// Removes a file, whatever is in it.
    [[nodiscard]] RemovalOutcome removeFile(const std::string& path);

    /// Removes an entry of a desktop's menu if this installer wrote it.
    [[nodiscard]] RemovalOutcome removeMenuEntry(const std::string& path);

    /// The administrator's rights were needed and refused.
    [[nodiscard]] bool isRefused() const { return isRefused_; }

  private:
    [[nodiscard]] RemovalOutcome byAdministrator(const std::string& path, RemovalOutcome outcome);

    LinkPolicy links_;
    Authorization* rights_;
    bool isRefused_ = false;
};

}  // namespace installer
