#include "product/RtfResource.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>

#include "foundation/rtf/RtfReader.h"
#include "foundation/text/Format.h"
#include "ports/Bundle.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "ports/SystemLog.h"
#include "product/CutNote.h"

namespace installer {

namespace {

/// What is longer is cut off here, and then refused since it ends too early.
constexpr std::size_t largestResource = std::size_t{16} << 20U;

std::nullopt_t refused(Platform& platform, std::string_view reason) {
    platform.log.log(formatted("%@", {reason}));
    return std::nullopt;
}

}  // namespace

std::optional<StyledText> rtfResource(Platform& platform, const std::string& name) {
    const auto path = platform.bundle.resourcePath(name, "rtf");
    if (!path) return refused(platform, "the resource " + name + ".rtf is missing");
    const Result<std::string> rtf = platform.files.read(*path, largestResource);
    if (!rtf) return refused(platform, *path + ": " + rtf.error().message());
    std::variant<StyledText, RtfError> text = readRtf(rtf.value());
    if (const auto* error = std::get_if<RtfError>(&text)) {
        return refused(platform, *path + ": " + error->reason);
    }
    StyledText page = std::get<StyledText>(std::move(text));
    addCutNote(page, platform.bundle, *path);
    return page;
}

StyledText nilText() {
    return StyledText::fromPlainText("nil");
}

}  // namespace installer
