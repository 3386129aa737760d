#include "app/HelpPage.h"

#include "app/WindowTexts.h"
#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "product/LocalizedText.h"

namespace installer {

std::string helpWord(std::string_view productName) {
    return lowerCased(withoutWhiteSpace(productName));
}

std::string helpPageAddress(const Bundle& bundle) {
    return formatted(localizedText(bundle, "help_url_format"), {helpWord(productName(bundle))});
}

}  // namespace installer
