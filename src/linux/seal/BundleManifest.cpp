#include "linux/seal/BundleManifest.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sodium.h>
#include <unistd.h>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "privileged/files/RegularFile.h"

namespace installer {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t hashLength = std::size_t{crypto_hash_sha256_BYTES} * 2;
constexpr std::string_view separator = "  ";
/// A link is told apart from a file that holds the text of its target.
constexpr std::string_view linkMark = "link:";

class Hash {
  public:
    Hash() { crypto_hash_sha256_init(&state_); }

    void add(std::string_view bytes) {
        crypto_hash_sha256_update(&state_, reinterpret_cast<const unsigned char*>(bytes.data()),
                                  bytes.size());
    }
    [[nodiscard]] std::string text() {
        std::array<unsigned char, crypto_hash_sha256_BYTES> bytes{};
        crypto_hash_sha256_final(&state_, bytes.data());
        std::string text(hashLength + 1, '\0');
        sodium_bin2hex(text.data(), text.size(), bytes.data(), bytes.size());
        text.pop_back();
        return text;
    }

  private:
    crypto_hash_sha256_state state_{};
};

Result<std::string> hashOfFile(const std::string& path) {
    const auto file = openRegularFile(AT_FDCWD, path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (!file) return file.error();
    Hash hash;
    std::string buffer(std::size_t{1} << 16U, '\0');
    for (;;) {
        const ssize_t count = ::read(file.value().descriptor.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::error_code(errno, std::system_category());
        if (count == 0) return hash.text();
        hash.add(std::string_view(buffer).substr(0, static_cast<std::size_t>(count)));
    }
}

Result<std::string> hashOfLink(const std::string& path) {
    std::error_code error;
    const std::string target = fs::read_symlink(path, error).string();
    if (error) return error;
    Hash hash;
    hash.add(linkMark);
    hash.add(target);
    return hash.text();
}

bool isOfTheSeal(const std::string& path) {
    return path == manifestFile || path == manifestSignatureFile || path == makersKeyFile;
}

}  // namespace

Result<BundleManifest> manifestOf(const std::string& contents) {
    BundleManifest manifest;
    std::error_code error;
    fs::recursive_directory_iterator entry(contents, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const std::string path = entry->path().string();
        const std::string name = path.substr(contents.size() + 1);
        const fs::file_type type = entry->symlink_status(error).type();
        if (error) return error;
        if (type == fs::file_type::directory || isOfTheSeal(name)) continue;
        auto hash = type == fs::file_type::symlink ? hashOfLink(path) : hashOfFile(path);
        if (!hash) return hash.error();
        manifest.emplace(name, std::move(hash).value());
    }
    if (error) return error;
    return manifest;
}

std::string textOf(const BundleManifest& manifest) {
    std::string text;
    for (const auto& [path, hash] : manifest) {
        text.append(hash).append(separator).append(path).append("\n");
    }
    return text;
}

std::optional<BundleManifest> parsedManifest(std::string_view text) {
    BundleManifest manifest;
    while (!text.empty()) {
        const auto end = text.find('\n');
        if (end == std::string_view::npos) return std::nullopt;
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end + 1);
        const bool isEntry = line.size() > hashLength + separator.size() &&
                             line.substr(hashLength, separator.size()) == separator;
        if (!isEntry) return std::nullopt;
        manifest.emplace(line.substr(hashLength + separator.size()), line.substr(0, hashLength));
    }
    return manifest;
}

}  // namespace installer
