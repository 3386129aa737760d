#include "qt/window/ToolkitMessages.h"

#include <QString>
#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <thread>

#include "ports/SystemLog.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

constexpr std::array<std::string_view, 2> harmless = {"QStandardPaths: ", "Detected locale "};

struct Receiver {
    SystemLog* log = nullptr;
    std::thread::id thread;
};

// The toolkit takes a plain function, so there is no other place for this.
Receiver receiver;

void receive(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg) return;
    const std::string text = fromQt(message);
    const auto begins = [&](std::string_view beginning) { return text.starts_with(beginning); };
    if (std::any_of(harmless.begin(), harmless.end(), begins)) return;
    if (std::this_thread::get_id() == receiver.thread)
        receiver.log->log(text);
    else
        std::fputs((text + "\n").c_str(), stderr);
}

}  // namespace

ToolkitMessages::ToolkitMessages(SystemLog& log) {
    receiver = {&log, std::this_thread::get_id()};
    before_ = qInstallMessageHandler(receive);
}

ToolkitMessages::~ToolkitMessages() {
    qInstallMessageHandler(before_);
}

}  // namespace installer
