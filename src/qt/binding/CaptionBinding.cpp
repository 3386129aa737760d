#include <QLabel>
#include <QVariant>

#include "ports/window/DescriptionProperties.h"
#include "qt/binding/Binding.h"

namespace installer {

/// The size is a property of the label, which its dressing follows.
ShowValue captionBinding(QObject& control, const BindingContext& /*context*/) {
    auto* label = qobject_cast<QLabel*>(&control);
    if (!label) return {};
    return [label, usual = label->property(textSizeProperty)](const PropertyValue& value) {
        label->setProperty(textSizeProperty, isTrue(value) ? QVariant("small") : usual);
    };
}

}  // namespace installer
