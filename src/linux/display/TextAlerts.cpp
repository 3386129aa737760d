#include "linux/display/TextAlerts.h"

#include "ports/SystemLog.h"

namespace installer {

std::size_t TextAlerts::runModal(const Alert& alert) {
    const char* separator = alert.title.empty() || alert.message.empty() ? "" : ": ";
    log_.log(alert.title + separator + alert.message);
    return 0;
}

}  // namespace installer
