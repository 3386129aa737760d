#include "hosts/UnknownHostModel.h"

#include "platform/Platform.h"
#include "wizard/LocalizedText.h"

namespace installer {

std::string UnknownHostModel::hostName() const {
    return localizedText(platform_.bundle, "custom_path");
}

}  // namespace installer
