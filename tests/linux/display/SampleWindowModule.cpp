#include <cstdlib>

#include "ports/Alerts.h"
#include "ports/SystemLog.h"
#include "ports/window/WindowModule.h"

// A window module without a toolkit. Its alerts answer the length of the executable's path; it
// takes an empty path for a machine without a display.

namespace {

using namespace installer;

class SampleWindowModule final : public WindowModule, public Alerts {
  public:
    explicit SampleWindowModule(std::size_t answer) : answer_(answer) {}

    EventLoop& eventLoop() override { std::abort(); }
    DescriptorWatcher& descriptors() override { std::abort(); }
    Alerts& alerts() override { return *this; }
    FolderPanel& folderPanel() override { std::abort(); }
    InterfaceLoader& interfaces() override { std::abort(); }
    Clipboard& clipboard() override { std::abort(); }
    Clock& clock() override { std::abort(); }
    void run() override {}
    std::size_t runModal(const Alert& /*alert*/) override { return answer_; }

  private:
    std::size_t answer_;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) WindowModule* installerMakeWindowModule(
    const WindowModuleContext& context) {
    if (context.executablePath.empty()) {
        context.log.log("no display for the sample module");
        return nullptr;
    }
    context.log.log("made by the sample module");
    return new SampleWindowModule(context.executablePath.size());
}
