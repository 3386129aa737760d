#include "linux/seal/BundleSeal.h"

#include <cstddef>

#include <unistd.h>

#include "foundation/values/Paths.h"
#include "linux/seal/BundleManifest.h"
#include "linux/seal/Minisign.h"
#include "privileged/files/RegularFile.h"

namespace installer {

namespace {

constexpr std::size_t largestText = std::size_t{64} << 20U;

bool exists(const std::string& path) {
    return ::access(path.c_str(), F_OK) == 0;
}

std::optional<std::string> firstDifference(const BundleManifest& signedFiles,
                                           const BundleManifest& found) {
    for (const auto& [path, hash] : signedFiles) {
        const auto here = found.find(path);
        if (here == found.end()) return path + " is missing from the signed installer";
        if (here->second != hash) return path + " was changed after the installer was signed";
    }
    for (const auto& [path, hash] : found) {
        if (!signedFiles.contains(path)) return path + " is not part of the signed installer";
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> brokenSealOf(const std::string& bundleFolder) {
    const std::string contents = joinPath(bundleFolder, "Contents");
    const std::string list = joinPath(contents, manifestFile);
    const std::string signature = joinPath(contents, manifestSignatureFile);
    const std::string key = joinPath(contents, makersKeyFile);
    if (!exists(list) && !exists(signature) && !exists(key)) return std::nullopt;

    const auto text = readRegularFile(list, largestText);
    const auto signatureText = readRegularFile(signature, largestText);
    const auto keyText = readRegularFile(key, largestText);
    if (!text || !signatureText || !keyText) return "the signature of the installer is incomplete";
    const auto publicKey = parsedPublicKey(keyText.value());
    if (!publicKey || !isSignedBy(*publicKey, text.value(), signatureText.value())) {
        return list + " is not as its maker signed it";
    }
    const auto signedFiles = parsedManifest(text.value());
    if (!signedFiles) return list + " cannot be read";
    const auto found = manifestOf(contents);
    if (!found) return "the installer cannot be read: " + found.error().message();
    return firstDifference(*signedFiles, found.value());
}

}  // namespace installer
