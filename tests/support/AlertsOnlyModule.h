#pragma once

#include <cstdlib>

#include "ports/window/WindowModule.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

/// A module of which alerts are the only part that anybody may use.
class AlertsOnlyModule final : public WindowModule {
  public:
    RecordingAlerts shown;

    EventLoop& eventLoop() override { std::abort(); }
    DescriptorWatcher& descriptors() override { std::abort(); }
    Alerts& alerts() override { return shown; }
    FolderPanel& folderPanel() override { std::abort(); }
    InterfaceLoader& interfaces() override { std::abort(); }
    Clipboard& clipboard() override { std::abort(); }
    Clock& clock() override { std::abort(); }
    void run() override { std::abort(); }
};

}  // namespace installer::test
