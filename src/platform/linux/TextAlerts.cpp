#include "platform/linux/TextAlerts.h"

#include "platform/SystemLog.h"

namespace installer {

std::size_t TextAlerts::runModal(const Alert& alert) {
    const char* separator = alert.title.empty() || alert.message.empty() ? "" : ": ";
    log_.log(alert.title + separator + alert.message);
    return 0;
}

}  // namespace installer
