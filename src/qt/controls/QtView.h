#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>

#include "ports/window/View.h"

namespace installer {

class QtView final : public View {
  public:
    explicit QtView(QWidget* widget) : widget_(widget) {}

    void setHidden(bool hidden) override;
    [[nodiscard]] Size size() const override;
    void setFrame(Point origin, Size size) override;
    /// A view without a layout lays its subviews out by their frames (SubviewLayout.h).
    void addSubview(const std::shared_ptr<View>& child) override;
    [[nodiscard]] std::shared_ptr<View> superview() const override;

  private:
    struct Frame {
        Point origin;
        Size size;
    };

    void applyFrame();

    QPointer<QWidget> widget_;
    std::optional<Frame> frame_;  ///< kept until the view is put into another
};

}  // namespace installer
