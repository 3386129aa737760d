#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/installerctl/machine/UserMachine.h"
#include "tools/installerctl/machine/Users.h"
#include "tools/installerctl/operations/ExitStatus.h"
#include "tools/installerctl/output/Report.h"
#include "tools/installerctl/records/ReceiptFile.h"

namespace installer {

/// Which product the bundle installs.
struct ProductIdentity {
    std::string identifier;  ///< names the receipt: the bundle's own, or one made of the names
    std::string company;
    std::string product;
    std::string version;
};

/// On which disk and for whom a verb works.
struct Scope {
    AskedUsers users;
    std::string target;  ///< the target volume as it was named; empty for none
};

/// What a verb works with: the bundle, a machine for each user, the receipts of the disk.
class Session {
  public:
    /// Why a verb cannot begin.
    struct Refusal {
        ExitStatus status = ExitStatus::wrongUse;
        std::string reason;
    };

    /// Null with the reason in `refusal`.
    [[nodiscard]] static std::unique_ptr<Session> open(const Scope& scope, Refusal& refusal);

    [[nodiscard]] const ProductIdentity& product() const { return product_; }
    [[nodiscard]] const std::vector<std::unique_ptr<UserMachine>>& machines() const {
        return machines_;
    }
    /// The first user's: it stands for the disk.
    [[nodiscard]] UserMachine& machine() const { return *machines_.front(); }
    [[nodiscard]] ReceiptFolder receipts() const { return ReceiptFolder(machine().searchPaths()); }
    /// The root of the disk that is installed onto.
    [[nodiscard]] std::string diskRoot() const;
    /// Which links this process may follow.
    [[nodiscard]] LinkPolicy links() const { return LinuxFileManager::linkPolicyOfThisProcess(); }

    /// A report that names the verb, the product and the users.
    [[nodiscard]] Report report(const std::string& command) const;

  private:
    Session() = default;

    ProductIdentity product_;
    std::vector<std::unique_ptr<UserMachine>> machines_;
};

/// Less than, equal to or greater than 0 as the first version is older, the same or newer. Numbers
/// between dots count as numbers; a missing one as 0.
[[nodiscard]] int compareVersions(const std::string& left, const std::string& right);

}  // namespace installer
