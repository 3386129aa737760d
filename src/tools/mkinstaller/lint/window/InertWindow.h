#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "ports/window/Clipboard.h"
#include "ports/window/FolderPanel.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/Workspace.h"

namespace installer {

// A window of which nothing is ever seen: controllers are made on it only to be asked.

/// Has no parts, and takes note of the names that it is asked for.
class InertInterface final : public Interface {
  public:
    explicit InertInterface(std::set<std::string>& asked) : asked_(asked) {}

    std::shared_ptr<Window> window(const std::string& name) override { return none<Window>(name); }
    std::shared_ptr<View> view(const std::string& name) override { return none<View>(name); }
    std::shared_ptr<TextField> textField(const std::string& name) override {
        return none<TextField>(name);
    }
    std::shared_ptr<ImageView> imageView(const std::string& name) override {
        return none<ImageView>(name);
    }
    std::shared_ptr<ListSelection> list(const std::string& name) override {
        return none<ListSelection>(name);
    }
    std::shared_ptr<ProgressIndicator> progressIndicator(const std::string& name) override {
        return none<ProgressIndicator>(name);
    }

  private:
    template <class Part>
    std::shared_ptr<Part> none(const std::string& name) {
        asked_.insert(name);
        return nullptr;
    }

    std::set<std::string>& asked_;
};

/// Gives each description as one without parts.
class InertInterfaceLoader final : public InterfaceLoader {
  public:
    std::unique_ptr<Interface> load(const std::string& /*name*/,
                                    InterfaceOwner& /*owner*/) override {
        return std::make_unique<InertInterface>(asked);
    }

    std::set<std::string> asked;
};

class InertFolderPanel final : public FolderPanel {
  public:
    std::optional<std::string> runModal(const FolderRequest& /*request*/) override { return {}; }
};

class InertClipboard final : public Clipboard {
  public:
    void setText(const std::string& /*text*/) override {}
};

class InertWorkspace final : public Workspace {
  public:
    bool openAddress(const std::string& /*address*/) override { return false; }
    bool openFile(const std::string& /*path*/) override { return false; }
    Subscription onOpeningFailed(
        std::function<void(const std::string& addressOrPath)> /*handler*/) override {
        return {};
    }
    std::vector<std::string> runningApplications() override { return {}; }
    ApplicationFace faceOfRunningApplication(const std::string& /*name*/) override { return {}; }
    Subscription onApplicationTerminated(
        std::function<void(const std::string& name)> /*handler*/) override {
        return {};
    }
    std::unique_ptr<LaunchedApplication> launchHidden(
        const std::string& /*path*/, const std::vector<std::string>& /*arguments*/) override {
        return nullptr;
    }
    std::string systemDescription() override { return {}; }
    Image iconOfFile(const std::string& /*path*/) override { return {}; }
};

}  // namespace installer
