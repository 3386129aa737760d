#include "hosts/UnknownHostModel.h"

#include "ports/Platform.h"
#include "product/LocalizedText.h"

namespace installer {

std::string UnknownHostModel::hostName() const {
    return localizedText(platform_.bundle, "custom_path");
}

}  // namespace installer
