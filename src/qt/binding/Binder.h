#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/observers/Subscription.h"
#include "ports/Bundle.h"
#include "ports/SystemLog.h"
#include "ports/window/InterfaceOwner.h"
#include "qt/binding/Binding.h"

namespace installer {

/// Binds the controls of a description to the properties and actions that they name, and sets the
/// texts of the bundle. A binding ends with this object or with its control.
class Binder final : public QObject {
  public:
    /// All arguments outlive the binder, except the controls. A property that does not fit its
    /// control is logged.
    Binder(QWidget& root, InterfaceOwner& owner, const Bundle& bundle, SystemLog& log,
           const OpenLink& openLink);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct BoundControl {
        enum class ReadAgain { never, whenShown, whenColorsChange };

        QPointer<QObject> control;
        std::string property;
        ReadAgain readAgain = ReadAgain::never;
        ShowValue show;
    };

    void bind(QObject& control);
    void bind(QObject& control, const char* kind, MakeBinding make);
    void bindAction(QObject& control);
    void fillIn(QObject& control);
    void show(const BoundControl& bound);
    void showProperty(std::string_view property);
    void complain(const QObject& control, const char* name);

    InterfaceOwner& owner_;
    const Bundle& bundle_;
    SystemLog& log_;
    const OpenLink& openLink_;
    std::vector<BoundControl> bound_;
    Subscription announcements_;
};

}  // namespace installer
