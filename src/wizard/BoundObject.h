#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/observers/Observable.h"
#include "ports/window/InterfaceOwner.h"

namespace installer {

/// An owner of interface descriptions that keeps a table of the properties and actions which its
/// controls can name. The constructor of the derived class fills the table.
///
/// Controls learn of changes in one way: an `Observable` that this object follows announces them.
/// A property that nobody announces is bound with the names of announced properties, and is read
/// again together with these.
class BoundObject : public InterfaceOwner {
  public:
    BoundObject() = default;
    BoundObject(const BoundObject&) = delete;
    BoundObject& operator=(const BoundObject&) = delete;

    /// Whether a description can name the property or the action.
    [[nodiscard]] bool hasProperty(std::string_view property) const;
    [[nodiscard]] bool hasAction(std::string_view action) const;

    [[nodiscard]] PropertyValue valueForProperty(std::string_view property) const override;
    void setValueForProperty(std::string_view property, const PropertyValue& value) override;
    void setRowChecked(std::string_view property, std::size_t row, bool checked) override;
    /// The action may destroy this object.
    void performAction(std::string_view action, const void* sender) override;
    /// Always false: no text can be edited, unless the derived class overrides this.
    [[nodiscard]] bool shouldChangeText(std::string_view replacement) override;
    /// Handlers may do in their call what `ObserverList` allows.
    [[nodiscard]] Subscription observeProperties(
        std::function<void(std::string_view property)> handler) override;

    struct BoundProperty {
        std::string name;
        bool isConstant = false;
    };
    /// Every property that controls can name.
    [[nodiscard]] std::vector<BoundProperty> boundProperties() const;

  protected:
    using Getter = std::function<PropertyValue()>;
    using BoolSetter = std::function<void(bool)>;
    using RowSetter = std::function<void(std::size_t row, bool checked)>;
    using Action = std::function<void(const void* sender)>;
    /// Names of announced properties. Whenever one of them is announced, the controls read the
    /// property that is bound with them again, too.
    using ReadWith = std::vector<std::string>;

    void bindProperty(const std::string& name, Getter getter, const ReadWith& with = {});
    /// A property that never changes: controls read it once, and nobody announces it.
    void bindConstant(const std::string& name, Getter getter);
    /// A property that a check box changes.
    void bindSwitch(const std::string& name, std::function<bool()> getter, BoolSetter setter,
                    const ReadWith& with = {});
    /// A list whose rows have check boxes.
    void bindList(const std::string& name, std::function<std::vector<ListRow>()> getter,
                  RowSetter setter);
    void bindAction(std::string name, Action action);

    /// Makes the controls read every property again that `source` announces, after its did-change
    /// call, until the subscription is destroyed. This object must outlive the subscription.
    [[nodiscard]] Subscription follow(Observable& source);

  private:
    struct Binding {
        Getter getter;
        bool isConstant = false;
    };
    using Controls = ObserverList<std::string_view>;

    void makeControlsRead(std::string_view property);

    std::map<std::string, Binding, std::less<>> bindings_;
    std::map<std::string, BoolSetter, std::less<>> switches_;
    std::map<std::string, RowSetter, std::less<>> lists_;
    std::map<std::string, Action, std::less<>> actions_;
    /// By the name of an announced property, those that are read with it, in the order of binding.
    std::map<std::string, std::vector<std::string>, std::less<>> readWith_;
    std::shared_ptr<Controls> controls_ = std::make_shared<Controls>();
};

}  // namespace installer
