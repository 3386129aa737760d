#include "privileged/trees/TreeRemoval.h"

#include <dirent.h>
#include <unistd.h>

#include "privileged/files/FolderListing.h"
#include "privileged/system/SystemError.h"
#include "privileged/trees/Temporary.h"

namespace installer {

std::error_code removeTree(const std::string& path, LinkPolicy policy) {
    const auto location = locate(path, policy);
    if (!location) return location.error();
    const int parent = location.value().parent.get();
    const std::string& name = location.value().name;
    const auto type = entryType(parent, name);
    if (!type) {
        // An earlier removal may have moved it aside but failed to remove its contents.
        clearDeadTemporariesAgain(parent);
        return type.error();
    }
    if (type.value() != DT_DIR) {
        return unlinkat(parent, name.c_str(), 0) == 0 ? std::error_code() : systemError();
    }
    auto aside = Temporary::moveAside(parent, name);
    return aside ? aside.value().remove() : aside.error();
}

}  // namespace installer
