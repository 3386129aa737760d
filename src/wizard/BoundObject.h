#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ports/window/InterfaceOwner.h"

namespace installer {

/// An owner of interface descriptions that keeps a table of what its controls can name. The tables
/// are filled by the constructor of the derived class.
class BoundObject : public InterfaceOwner {
  public:
    BoundObject();
    BoundObject(const BoundObject&) = delete;
    BoundObject& operator=(const BoundObject&) = delete;

    /// Whether a description can name the property or the action.
    [[nodiscard]] bool hasProperty(std::string_view property) const;
    [[nodiscard]] bool hasAction(std::string_view action) const;

    [[nodiscard]] PropertyValue valueForProperty(std::string_view property) const override;
    void setValueForProperty(std::string_view property, const PropertyValue& value) override;
    void setRowChecked(std::string_view property, std::size_t row, bool checked) override;
    void performAction(std::string_view action, const void* sender) override;
    /// Nothing that is shown can be edited, unless the derived class says otherwise.
    [[nodiscard]] bool shouldChangeText(std::string_view replacement) override;
    [[nodiscard]] Subscription observeProperties(
        std::function<void(std::string_view property)> handler) override;

  protected:
    using Getter = std::function<PropertyValue()>;
    using BoolSetter = std::function<void(bool)>;
    using RowSetter = std::function<void(std::size_t row, bool checked)>;
    using Action = std::function<void(const void* sender)>;

    void bindProperty(std::string name, Getter getter);
    /// A property that a check box changes.
    void bindSwitch(std::string name, std::function<bool()> getter, BoolSetter setter);
    void bindList(std::string name, std::function<std::vector<ListRow>()> getter, RowSetter setter);
    void bindAction(std::string name, Action action);

    /// Tells the controls that are bound to the property to read it anew.
    void propertyDidChange(std::string_view property);

  private:
    using Handler = std::function<void(std::string_view)>;
    using Handlers = std::vector<std::shared_ptr<Handler>>;

    std::map<std::string, Getter, std::less<>> getters_;
    std::map<std::string, BoolSetter, std::less<>> switches_;
    std::map<std::string, RowSetter, std::less<>> lists_;
    std::map<std::string, Action, std::less<>> actions_;
    std::shared_ptr<Handlers> handlers_;
};

}  // namespace installer
