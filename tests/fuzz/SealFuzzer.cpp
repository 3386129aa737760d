// The readers of a bundle's seal: the maker's key, the signature and the list of files. Input: each
// of them.

#include <string>
#include <string_view>
#include <vector>

#include "linux/seal/BundleManifest.h"
#include "linux/seal/Minisign.h"
#include "tests/fuzz/FuzzInput.h"

namespace {

using namespace installer;
using fuzz::require;

void checkKey(std::string_view text, std::string_view list, std::string_view signature) {
    const auto key = parsedPublicKey(text);
    if (!key) return;
    const auto again = parsedPublicKey(textOf(*key));
    require(again && again->number == key->number && again->bytes == key->bytes);
    // Nobody guesses a signature.
    require(!isSignedBy(*key, std::string(list) + "more", signature) ||
            !isSignedBy(*key, list, signature));
}

void checkList(std::string_view text) {
    const auto manifest = parsedManifest(text);
    if (!manifest) return;
    for (const auto& [path, hash] : *manifest) require(!path.empty() && !hash.empty());
    require(parsedManifest(textOf(*manifest)) == manifest);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> parts = fuzz::parts(fuzz::textOf(data, size), 3);
    checkKey(parts[0], parts[2], parts[1]);
    checkList(parts[2]);
    return 0;
}
