#include "ports/window/DisplayServers.h"

#include <algorithm>
#include <cstdlib>

#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>

#include "privileged/system/FileDescriptor.h"

namespace installer {

std::shared_ptr<void> connectToXServer() {
    std::shared_ptr<xcb_connection_t> connection(xcb_connect(nullptr, nullptr), xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) return nullptr;
    return connection;
}

bool reachesWaylandCompositor(const std::string& name) {
    std::string path = name;
    if (!path.starts_with("/")) {
        const char* folder = std::getenv("XDG_RUNTIME_DIR");
        if (folder == nullptr) return false;
        path = std::string(folder) + "/" + name;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::copy(path.begin(), path.end(), address.sun_path);
    const FileDescriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return connection && ::connect(connection.get(), reinterpret_cast<const sockaddr*>(&address),
                                   sizeof address) == 0;
}

}  // namespace installer
