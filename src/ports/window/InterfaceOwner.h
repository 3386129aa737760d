#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/observers/Subscription.h"
#include "foundation/text/StyledText.h"
#include "ports/window/Image.h"

namespace installer {

/// One row of a list that a window shows.
struct ListRow {
    std::string title = {};
    std::string detail = {};  ///< a second, quieter line, such as a folder
    Image icon = {};
    bool checked = false;

    friend bool operator==(const ListRow&, const ListRow&) = default;
};

/// The value of a property, or none.
using PropertyValue =
    std::variant<std::monostate, bool, std::string, StyledText, Image, std::vector<ListRow>>;

/// The object behind an interface description. Controls name its properties and actions in the
/// description; names that it does not know have no value and do nothing. Main thread only.
class InterfaceOwner {
  public:
    virtual ~InterfaceOwner() = default;

    [[nodiscard]] virtual PropertyValue valueForProperty(std::string_view property) const = 0;

    /// The user changed a control.
    virtual void setValueForProperty(std::string_view property, const PropertyValue& value) = 0;

    /// The user ticked or unticked a row of the property, which is a list.
    virtual void setRowChecked(std::string_view property, std::size_t row, bool checked) = 0;

    /// The user pressed a control; `sender` identifies it.
    virtual void performAction(std::string_view action, const void* sender) = 0;

    /// Asked when the user types into a text that this object guards: whether the text may change.
    [[nodiscard]] virtual bool shouldChangeText(std::string_view replacement) = 0;

    /// Calls `handler` with the name of every property that may have just changed, so that its
    /// controls read it again, until the subscription is destroyed. The handler may unsubscribe
    /// itself and others, and destroy this object.
    [[nodiscard]] virtual Subscription observeProperties(
        std::function<void(std::string_view property)> handler) = 0;
};

}  // namespace installer
