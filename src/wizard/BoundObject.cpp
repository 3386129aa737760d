#include "wizard/BoundObject.h"

#include <algorithm>
#include <utility>

namespace installer {

BoundObject::BoundObject() : handlers_(std::make_shared<Handlers>()) {}

bool BoundObject::hasProperty(std::string_view property) const {
    return getters_.contains(property);
}

bool BoundObject::hasAction(std::string_view action) const {
    return actions_.contains(action);
}

PropertyValue BoundObject::valueForProperty(std::string_view property) const {
    const auto getter = getters_.find(property);
    return getter == getters_.end() ? PropertyValue() : getter->second();
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
    if (found != actions_.end()) found->second(sender);
}

bool BoundObject::shouldChangeText(std::string_view /*replacement*/) {
    return false;
}

Subscription BoundObject::observeProperties(std::function<void(std::string_view)> handler) {
    auto entry = std::make_shared<Handler>(std::move(handler));
    handlers_->push_back(entry);
    return Subscription([handlers = std::weak_ptr(handlers_), entry] {
        if (const auto all = handlers.lock()) std::erase(*all, entry);
    });
}

void BoundObject::bindProperty(std::string name, Getter getter) {
    getters_.insert_or_assign(std::move(name), std::move(getter));
}

void BoundObject::bindSwitch(std::string name, std::function<bool()> getter, BoolSetter setter) {
    switches_.insert_or_assign(name, std::move(setter));
    bindProperty(std::move(name), std::move(getter));
}

void BoundObject::bindList(std::string name, std::function<std::vector<ListRow>()> getter,
                           RowSetter setter) {
    lists_.insert_or_assign(name, std::move(setter));
    bindProperty(std::move(name), std::move(getter));
}

void BoundObject::bindAction(std::string name, Action action) {
    actions_.insert_or_assign(std::move(name), std::move(action));
}

void BoundObject::propertyDidChange(std::string_view property) {
    // A handler may subscribe or unsubscribe others; those that left meanwhile are not called.
    const Handlers handlers = *handlers_;
    for (const auto& handler : handlers) {
        if (std::ranges::find(*handlers_, handler) != handlers_->end()) (*handler)(property);
    }
}

}  // namespace installer
