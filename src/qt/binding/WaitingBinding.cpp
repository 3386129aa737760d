#include <QLabel>

#include "qt/binding/Binding.h"
#include "qt/controls/WaitingSign.h"

namespace installer {

ShowValue waitingBinding(QObject& control, const BindingContext& /*context*/) {
    auto* label = qobject_cast<QLabel*>(&control);
    if (!label) return {};
    return [sign = new WaitingSign(*label)](const PropertyValue& value) {
        sign->setWaiting(isTrue(value));
    };
}

}  // namespace installer
