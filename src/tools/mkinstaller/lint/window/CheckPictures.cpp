#include "tools/mkinstaller/lint/window/CheckPictures.h"

#include <algorithm>
#include <string>
#include <utility>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/lint/window/PictureFile.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

constexpr std::uint32_t largestSide = 4096;

bool isPicture(const std::string& name) {
    const std::string suffix = suffixOf(name);
    return suffix == "png" || suffix == "tiff";
}

std::string sizeOf(const PictureFile& picture) {
    return std::to_string(picture.width) + "x" + std::to_string(picture.height);
}

class PictureCheck {
  public:
    PictureCheck(const LintContext& context, std::string file, std::string kitFile)
        : context_(context), file_(std::move(file)), kitFile_(std::move(kitFile)) {}

    void check() {
        const auto bytes = contentsOf(file_);
        const auto picture = bytes ? readPicture(*bytes) : std::nullopt;
        if (!picture || !picture->isWhole || picture->width == 0 || picture->height == 0) {
            tell("M066", picture ? "the picture is damaged or cut off" : "this is no picture",
                 "save it anew as " + suffixOf(file_));
            return;
        }
        const PictureKind wanted = suffixOf(file_) == "png" ? PictureKind::png : PictureKind::tiff;
        if (picture->kind != wanted) {
            tell("M068", "the picture is not of the kind that its name says",
                 "save it anew as " + suffixOf(file_));
        }
        checkSize(*picture);
    }

  private:
    void tell(std::string_view code, std::string problem, std::string repair) {
        context_.findings.add(code, {file_}, std::move(problem), std::move(repair));
    }

    /// Shown in the place of the kit's own picture, it should have its proportions and at least
    /// half of its dots.
    void checkSize(const PictureFile& picture) {
        const auto bytes = contentsOf(kitFile_);
        const auto kit = bytes ? readPicture(*bytes) : std::nullopt;
        if (!kit) return;
        const bool hasProportions = std::uint64_t{picture.width} * kit->height ==
                                    std::uint64_t{picture.height} * kit->width;
        const bool isTooSmall = picture.width < kit->width / 2 || picture.height < kit->height / 2;
        const bool isTooLarge = std::max(picture.width, picture.height) > largestSide;
        if (hasProportions && !isTooSmall && !isTooLarge) return;
        tell("M067",
             "the picture has " + sizeOf(picture) + " dots, so it is shown blurred or small",
             "make it " + sizeOf(*kit));
    }

    const LintContext& context_;
    std::string file_;
    std::string kitFile_;
};

}  // namespace

void checkPictures(const LintContext& context) {
    for (const std::string& name : sortedNames(context.kit.resources())) {
        if (!isPicture(name)) continue;
        const std::string kitFile = joinPath(context.kit.resources(), name);
        const std::string shared = joinPath(context.product.resources, name);
        const bool isThere = entryType(shared) != EntryType::missing;
        if (isThere) PictureCheck(context, shared, kitFile).check();
        if (!isThere && context.product.form == Product::Form::bundle) {
            context.findings.add("M065", {shared}, "the picture is missing, so nothing is shown",
                                 "assemble the bundle anew, or copy the picture there");
        }
        for (const std::string& language : context.product.languages()) {
            const std::string own = joinPath(context.product.languageFolder(language), name);
            if (entryType(own) != EntryType::missing) PictureCheck(context, own, kitFile).check();
        }
    }
}

}  // namespace installer
