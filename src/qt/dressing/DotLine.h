#pragma once

#include <QObject>

#include "ports/window/DescriptionProperties.h"

class QWidget;

namespace installer {

/// Draws a thin line between the dots of the rows in a list of steps. A dot is a label with the
/// property `dot`, in a view that was put into the list.
class DotLine final : public QObject {
  public:
    static constexpr const char* dotProperty = installer::dotProperty;

    /// Ends with the list.
    explicit DotLine(QWidget& list);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void draw();

    QWidget& list_;
};

}  // namespace installer
