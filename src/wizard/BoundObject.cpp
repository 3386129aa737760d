#include "wizard/BoundObject.h"

#include <utility>

namespace installer {

bool BoundObject::hasProperty(std::string_view property) const {
    return bindings_.contains(property);
}

bool BoundObject::hasAction(std::string_view action) const {
    return actions_.contains(action);
}

PropertyValue BoundObject::valueForProperty(std::string_view property) const {
    const auto binding = bindings_.find(property);
    return binding == bindings_.end() ? PropertyValue() : binding->second.getter();
}

void BoundObject::setValueForProperty(std::string_view property, const PropertyValue& value) {
    const auto setter = switches_.find(property);
    const bool* flag = std::get_if<bool>(&value);
    if (setter != switches_.end() && flag != nullptr) setter->second(*flag);
}

void BoundObject::setRowChecked(std::string_view property, std::size_t row, bool checked) {
    const auto setter = lists_.find(property);
    if (setter != lists_.end()) setter->second(row, checked);
}

void BoundObject::performAction(std::string_view action, const void* sender) {
    const auto found = actions_.find(action);
    if (found == actions_.end()) return;
    // Copied, since the action may destroy this object.
    const Action perform = found->second;
    perform(sender);
}

bool BoundObject::shouldChangeText(std::string_view /*replacement*/) {
    return false;
}

Subscription BoundObject::observeProperties(std::function<void(std::string_view)> handler) {
    return controls_->add(std::move(handler));
}

std::vector<BoundObject::BoundProperty> BoundObject::boundProperties() const {
    std::vector<BoundProperty> properties;
    properties.reserve(bindings_.size());
    for (const auto& [name, binding] : bindings_) properties.push_back({name, binding.isConstant});
    return properties;
}

void BoundObject::bindProperty(const std::string& name, Getter getter, const ReadWith& with) {
    bindings_.insert_or_assign(name, Binding{std::move(getter)});
    for (const std::string& announced : with) readWith_[announced].push_back(name);
}

void BoundObject::bindConstant(const std::string& name, Getter getter) {
    bindings_.insert_or_assign(name, Binding{std::move(getter), true});
}

void BoundObject::bindSwitch(const std::string& name, std::function<bool()> getter,
                             BoolSetter setter, const ReadWith& with) {
    switches_.insert_or_assign(name, std::move(setter));
    bindProperty(name, std::move(getter), with);
}

void BoundObject::bindList(const std::string& name, std::function<std::vector<ListRow>()> getter,
                           RowSetter setter) {
    lists_.insert_or_assign(name, std::move(setter));
    bindProperty(name, std::move(getter));
}

void BoundObject::bindAction(std::string name, Action action) {
    actions_.insert_or_assign(std::move(name), std::move(action));
}

Subscription BoundObject::follow(Observable& source) {
    return source.observe([this](Observable::Moment moment, std::string_view property) {
        if (moment == Observable::Moment::didChange) makeControlsRead(property);
    });
}

void BoundObject::makeControlsRead(std::string_view property) {
    std::vector<std::string> names{std::string(property)};
    if (const auto others = readWith_.find(property); others != readWith_.end()) {
        names.insert(names.end(), others->second.begin(), others->second.end());
    }
    // A handler may destroy this object: from here on only the copies are used.
    const std::shared_ptr<Controls> controls = controls_;
    for (const std::string& name : names) controls->call(name);
}

}  // namespace installer
