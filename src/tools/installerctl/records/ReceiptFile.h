#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/installerctl/records/Receipt.h"

namespace installer {

class Authorization;
class LinuxSearchPaths;

/// The receipts of one disk, in `/Library/Receipts`, one file for each product.
class ReceiptFolder {
  public:
    /// The paths outlive this object.
    explicit ReceiptFolder(const LinuxSearchPaths& paths) : paths_(paths) {}

    [[nodiscard]] std::string path() const;
    [[nodiscard]] std::string fileOf(const std::string& identifier) const;

    struct Found {
        std::optional<Receipt> receipt;
        std::string
            problem;  ///< why the file that is there is not trusted; empty without a problem
    };

    /// The product's receipt; nothing at all if there is none. Only a plain file counts that
    /// belongs to root in a folder of root's, that nobody else can change, and that says what it
    /// must.
    [[nodiscard]] Found read(const std::string& identifier) const;

    /// The receipts of all other products that can be trusted.
    [[nodiscard]] std::vector<Receipt> others(const std::string& identifier) const;

    /// Replaces the receipt. Root does it in one step; for another user the administrator removes
    /// the old file and copies the new one. What went wrong, or the empty text.
    [[nodiscard]] std::string write(const Receipt& receipt, Authorization& rights) const;

  private:
    [[nodiscard]] Found parsed(std::string_view text) const;
    [[nodiscard]] bool isForbidden(const Receipt& receipt, const std::string& path) const;

    const LinuxSearchPaths& paths_;
};

}  // namespace installer
