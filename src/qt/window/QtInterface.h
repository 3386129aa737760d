#pragma once

#include <QPointer>
#include <QWidget>
#include <map>
#include <memory>
#include <string>

#include "ports/window/InterfaceLoader.h"
#include "qt/binding/Binder.h"

namespace installer {

class QtInterface final : public Interface {
  public:
    /// Owns the views of the description, except those that are put into other views.
    QtInterface(std::unique_ptr<QWidget> root, std::unique_ptr<Binder> binder);
    ~QtInterface() override;
    QtInterface(const QtInterface&) = delete;
    QtInterface& operator=(const QtInterface&) = delete;

    [[nodiscard]] std::shared_ptr<Window> window(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<View> view(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<TextField> textField(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<ImageView> imageView(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<ListSelection> list(const std::string& name) override;
    [[nodiscard]] std::shared_ptr<ProgressIndicator> progressIndicator(
        const std::string& name) override;

  private:
    template <class Adapter, class Control, class Part>
    [[nodiscard]] std::shared_ptr<Part> part(std::map<std::string, std::shared_ptr<Part>>& parts,
                                             const std::string& name);

    QPointer<QWidget> root_;
    // Collected at the start, because views of other descriptions may be put into these later.
    std::map<std::string, QPointer<QWidget>> widgets_;
    std::unique_ptr<Binder> binder_;

    std::map<std::string, std::shared_ptr<Window>> windows_;
    std::map<std::string, std::shared_ptr<View>> views_;
    std::map<std::string, std::shared_ptr<TextField>> textFields_;
    std::map<std::string, std::shared_ptr<ImageView>> imageViews_;
    std::map<std::string, std::shared_ptr<ListSelection>> lists_;
    std::map<std::string, std::shared_ptr<ProgressIndicator>> progressIndicators_;
};

}  // namespace installer
