#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace installer {

/// What of a mode is recorded.
inline constexpr std::uint32_t modeBits = 07777;

enum class EntryKind { file, folder, link };

/// What is known of one entry of a disk: enough to tell whether it is still the same.
struct EntryRecord {
    std::string path;
    EntryKind kind = EntryKind::file;
    /// The twelve mode bits; nullopt for a link, and for a file that may have any mode.
    std::optional<std::uint32_t> mode;
    std::uint64_t size = 0;  ///< of a file
    /// The SHA-256 of a file in hexadecimal digits, or a link's target. Empty for a folder, and for
    /// what could not be read: that is equal to nothing.
    std::string contents;
};

/// Whether the entries have the same kind, contents and mode, wherever they are.
[[nodiscard]] bool isSameEntry(const EntryRecord& left, const EntryRecord& right);

/// "file", "folder" or "link".
[[nodiscard]] std::string_view nameOf(EntryKind kind);

}  // namespace installer
