#include "qt/window/QtInterface.h"

#include <QLabel>
#include <QListWidget>
#include <QMainWindow>
#include <QProgressBar>
#include <QThread>

#include "qt/controls/QtControls.h"
#include "qt/controls/QtProgressIndicator.h"
#include "qt/controls/QtView.h"
#include "qt/values/QtText.h"
#include "qt/window/QtWindow.h"

namespace installer {

QtInterface::QtInterface(std::unique_ptr<QWidget> root, std::unique_ptr<Binder> binder)
    : root_(root.release()), binder_(std::move(binder)) {
    widgets_[fromQt(root_->objectName())] = root_;
    for (QWidget* widget : root_->findChildren<QWidget*>()) {
        widgets_[fromQt(widget->objectName())] = widget;
    }
}

QtInterface::~QtInterface() {
    if (!root_ || root_->parentWidget()) return;
    // One of its controls may have caused this and be at work until the next turn of the loop.
    if (QThread::currentThread()->loopLevel() > 0) {
        root_->hide();
        root_->deleteLater();
    } else {
        delete root_;
    }
}

template <class Adapter, class Control, class Part>
std::shared_ptr<Part> QtInterface::part(std::map<std::string, std::shared_ptr<Part>>& parts,
                                        const std::string& name) {
    if (const auto known = parts.find(name); known != parts.end()) return known->second;
    const auto found = widgets_.find(name);
    if (found == widgets_.end()) return nullptr;
    auto* control = qobject_cast<Control*>(found->second.data());
    if (!control) return nullptr;
    return parts[name] = std::make_shared<Adapter>(control);
}

std::shared_ptr<Window> QtInterface::window(const std::string& name) {
    return part<QtWindow, QMainWindow>(windows_, name);
}

std::shared_ptr<View> QtInterface::view(const std::string& name) {
    return part<QtView, QWidget>(views_, name);
}

std::shared_ptr<TextField> QtInterface::textField(const std::string& name) {
    return part<QtTextField, QLabel>(textFields_, name);
}

std::shared_ptr<ImageView> QtInterface::imageView(const std::string& name) {
    return part<QtImageView, QLabel>(imageViews_, name);
}

std::shared_ptr<ListSelection> QtInterface::list(const std::string& name) {
    return part<QtListSelection, QListWidget>(lists_, name);
}

std::shared_ptr<ProgressIndicator> QtInterface::progressIndicator(const std::string& name) {
    return part<QtProgressIndicator, QProgressBar>(progressIndicators_, name);
}

}  // namespace installer
