#include "tools/mkinstaller/signing/Signing.h"

#include <limits>
#include <string_view>

#include <fcntl.h>

#include "foundation/values/Paths.h"
#include "linux/seal/BundleManifest.h"
#include "privileged/system/FileDescriptor.h"
#include "privileged/system/WriteAll.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

std::optional<std::string> writeNew(const std::string& file, std::string_view text, mode_t mode) {
    const FileDescriptor descriptor(
        ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    std::error_code error;
    if (!descriptor) error = {errno, std::system_category()};
    if (!error) error = writeAll(descriptor.get(), text);
    if (!error) return std::nullopt;
    return file + " cannot be made: " + error.message();
}

std::optional<std::string> writeOrSay(const std::string& file, std::string_view text) {
    const auto error = writeFile(file, text);
    if (!error) return std::nullopt;
    return file + " cannot be written: " + error.message();
}

}  // namespace

std::optional<std::string> writeNewKey(const std::string& file) {
    const SigningKey key = SigningKey::generate();
    if (auto failure = writeNew(file, key.text(), 0600)) return failure;
    return writeNew(file + ".pub", textOf(key.publicKey()), 0644);
}

std::optional<SigningKey> readKey(const std::string& file, std::string& problem) {
    const auto text = contentsOf(file);
    if (text) return SigningKey::parsed(*text, problem);
    problem = "it cannot be read";
    return std::nullopt;
}

std::optional<std::string> sealBundle(const std::string& bundle, const SigningKey& key,
                                      std::int64_t time) {
    const std::string contents = joinPath(bundle, "Contents");
    const auto manifest = manifestOf(contents);
    if (!manifest) return "the bundle cannot be read: " + manifest.error().message();
    const std::string text = textOf(manifest.value());
    if (auto failure = writeOrSay(joinPath(contents, manifestFile), text)) return failure;
    if (auto failure = writeOrSay(joinPath(contents, manifestSignatureFile),
                                  key.signatureOf(text, manifestFile, time))) {
        return failure;
    }
    return writeOrSay(joinPath(contents, makersKeyFile), textOf(key.publicKey()));
}

std::optional<std::string> signFile(const std::string& file, const SigningKey& key,
                                    std::int64_t time) {
    const auto bytes = contentsOf(file, std::numeric_limits<std::size_t>::max());
    if (!bytes) return file + " cannot be read";
    return writeOrSay(file + ".minisig", key.signatureOf(*bytes, lastPathComponent(file), time));
}

}  // namespace installer
