#include "wizard/NavigationTexts.h"

#include "product/LocalizedText.h"

namespace installer {

NavigationTexts NavigationTexts::load(const Bundle& bundle) {
    return {localizedText(bundle, "continue", "can't find"), localizedText(bundle, "quit"),
            localizedText(bundle, "install_again"), localizedText(bundle, "go_back"),
            localizedText(bundle, "finish")};
}

}  // namespace installer
