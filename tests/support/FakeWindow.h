#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "foundation/observers/ObserverList.h"
#include "ports/window/Clipboard.h"
#include "ports/window/FolderPanel.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/View.h"
#include "ports/window/WindowPlatform.h"
#include "ports/window/Workspace.h"
#include "tests/support/FakePlatform.h"

namespace installer::test {

class FakeView : public View, public std::enable_shared_from_this<FakeView> {
  public:
    bool hidden = true;  ///< until somebody shows it
    Size extent;
    Point origin;
    std::vector<std::shared_ptr<View>> subviews;
    std::weak_ptr<FakeView> parent;

    void setHidden(bool hide) override { hidden = hide; }
    Size size() const override { return extent; }
    void setFrame(Point newOrigin, Size newSize) override {
        origin = newOrigin;
        extent = newSize;
    }
    void addSubview(const std::shared_ptr<View>& child) override {
        subviews.push_back(child);
        if (auto view = std::dynamic_pointer_cast<FakeView>(child)) view->parent = weak_from_this();
    }
    std::shared_ptr<View> superview() const override { return parent.lock(); }
};

class FakeTextField : public TextField {
  public:
    std::string text = "from the description";
    std::optional<Weight> weight;
    std::optional<Color> color;
    void setText(const std::string& newText) override { text = newText; }
    void setSystemFont(Weight newWeight) override { weight = newWeight; }
    void setColor(Color newColor) override { color = newColor; }
};

class FakeImageView : public ImageView {
  public:
    Image image;
    std::string accessibleName;
    std::vector<Image> images;  ///< each that was set, in order
    void setImage(const Image& newImage) override {
        image = newImage;
        images.push_back(newImage);
    }
    void setAccessibleName(const std::string& name) override { accessibleName = name; }
};

class FakeListSelection : public ListSelection {
  public:
    std::optional<std::size_t> row;
    void setSelectedRow(std::size_t newRow) override { row = newRow; }
    std::optional<std::size_t> selectedRow() const override { return row; }
};

class FakeProgressIndicator : public ProgressIndicator {
  public:
    std::vector<double> fractions;
    void setFraction(double fraction) override { fractions.push_back(fraction); }
};

class FakeWindow : public Window {
  public:
    int shown = 0;
    int miniaturized = 0;
    int closed = 0;
    std::function<void()> whenShown;
    void centerAndShow() override {
        ++shown;
        if (whenShown) whenShown();
    }
    void miniaturize() override { ++miniaturized; }
    void close() override { ++closed; }
};

/// The parts of one loaded description, by name; shared with the test, so that they can be looked
/// at after the interface is gone. A name that is not there is made when it is first asked for,
/// unless it is among `missing`.
struct FakeInterfaceParts {
    std::map<std::string, std::shared_ptr<FakeWindow>> windows;
    std::map<std::string, std::shared_ptr<FakeView>> views;
    std::map<std::string, std::shared_ptr<FakeTextField>> textFields;
    std::map<std::string, std::shared_ptr<FakeImageView>> imageViews;
    std::map<std::string, std::shared_ptr<FakeListSelection>> lists;
    std::map<std::string, std::shared_ptr<FakeProgressIndicator>> progressIndicators;
    std::set<std::string> missing;
    InterfaceOwner* owner = nullptr;
};

class FakeInterface : public Interface {
  public:
    explicit FakeInterface(std::shared_ptr<FakeInterfaceParts> parts) : parts_(std::move(parts)) {}

    std::shared_ptr<Window> window(const std::string& name) override {
        return part(parts_->windows, name);
    }
    std::shared_ptr<View> view(const std::string& name) override {
        return part(parts_->views, name);
    }
    std::shared_ptr<TextField> textField(const std::string& name) override {
        return part(parts_->textFields, name);
    }
    std::shared_ptr<ImageView> imageView(const std::string& name) override {
        return part(parts_->imageViews, name);
    }
    std::shared_ptr<ListSelection> list(const std::string& name) override {
        return part(parts_->lists, name);
    }
    std::shared_ptr<ProgressIndicator> progressIndicator(const std::string& name) override {
        return part(parts_->progressIndicators, name);
    }

  private:
    template <class Part>
    std::shared_ptr<Part> part(std::map<std::string, std::shared_ptr<Part>>& parts,
                               const std::string& name) {
        if (parts_->missing.contains(name)) return nullptr;
        auto& found = parts[name];
        if (!found) found = std::make_shared<Part>();
        return found;
    }

    std::shared_ptr<FakeInterfaceParts> parts_;
};

/// Loads every description but the `unloadable` ones, and keeps the parts of each load in order.
class FakeInterfaceLoader : public InterfaceLoader {
  public:
    std::set<std::string> unloadable;
    std::map<std::string, std::vector<std::shared_ptr<FakeInterfaceParts>>> loaded;
    /// What the parts of the next load of a name are made from.
    std::map<std::string, FakeInterfaceParts> prepared;
    /// Told the name of each description that is to be loaded.
    std::function<void(const std::string& name)> whenAsked;

    std::unique_ptr<Interface> load(const std::string& name, InterfaceOwner& owner) override {
        if (whenAsked) whenAsked(name);
        if (unloadable.contains(name)) return nullptr;
        auto parts = std::make_shared<FakeInterfaceParts>(prepared[name]);
        parts->owner = &owner;
        loaded[name].push_back(parts);
        return std::make_unique<FakeInterface>(parts);
    }
};

/// A user who chooses the folder `answer`, or cancels where the panel does not offer it.
class FakeFolderPanel : public FolderPanel {
  public:
    std::vector<FolderRequest> requests;
    std::optional<std::string> answer;
    std::optional<std::string> runModal(const FolderRequest& request) override;
};

class FakeClipboard : public Clipboard {
  public:
    std::string text;
    void setText(const std::string& newText) override { text = newText; }
};

/// A desktop over the files in memory, made of values. What happens stands in `journal`.
class FakeWorkspace : public Workspace {
  public:
    FakeWorkspace(MemoryFileManager& files, SystemLog& log, std::vector<std::string>& journal)
        : files_(files), log_(log), journal_(journal) {}

    std::vector<std::string> running;
    bool canLaunch = true;
    bool canOpen = true;
    std::vector<std::string> opened;  ///< addresses and paths, in order
    std::map<std::string, Image> icons;
    std::map<std::string, ApplicationFace> faces;
    std::string system = "Testix 1";

    /// The application ends: it is gone from `running`, and then whoever observes is told, if it
    /// was among the running ones when these were last asked for.
    void end(const std::string& name) { endAtOnce({name}); }
    /// They all are gone before anybody is told of the first.
    void endAtOnce(const std::vector<std::string>& names);
    [[nodiscard]] bool isObserved() const { return !terminations_.isEmpty(); }

    /// What was to open it has ended with an error.
    void failToOpen(const std::string& addressOrPath) { failedOpenings_.call(addressOrPath); }

    bool openAddress(const std::string& address) override;
    bool openFile(const std::string& path) override;
    Subscription onOpeningFailed(
        std::function<void(const std::string& addressOrPath)> handler) override {
        return failedOpenings_.add(std::move(handler));
    }
    std::vector<std::string> runningApplications() override;
    ApplicationFace faceOfRunningApplication(const std::string& name) override {
        return faces[name];
    }
    Subscription onApplicationTerminated(
        std::function<void(const std::string& name)> handler) override;
    /// Journals "launch PATH ARGUMENTS..."; ending it journals "terminate PATH".
    std::unique_ptr<LaunchedApplication> launchHidden(
        const std::string& path, const std::vector<std::string>& arguments) override;
    std::string systemDescription() override { return system; }
    Image iconOfFile(const std::string& path) override;

  private:
    bool open(const std::string& addressOrPath, bool isThere);

    MemoryFileManager& files_;
    SystemLog& log_;
    std::vector<std::string>& journal_;
    std::multiset<std::string> watched_;
    ObserverList<const std::string&> terminations_;
    ObserverList<const std::string&> failedOpenings_;
};

/// A whole platform with a window, of fakes.
class FakeWindowPlatform : public FakePlatform {
  public:
    FakeInterfaceLoader interfaces;
    FakeFolderPanel folderPanel;
    FakeWorkspace workspace{memory, log, journal};
    FakeClipboard clipboard;

    WindowPlatform windowPlatform{{platform}, interfaces, folderPanel, workspace, clipboard};
};

}  // namespace installer::test
