#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "foundation/observers/Observable.h"
#include "ports/window/InterfaceOwner.h"

namespace installer::test {

/// An owner made of values, which keeps in words what the window tells it.
class RecordingOwner : public InterfaceOwner {
  public:
    std::map<std::string, PropertyValue, std::less<>> values;
    std::vector<std::string> told;
    std::vector<const void*> senders;
    bool acceptsChanges = true;
    std::function<void(std::string_view action)> whenPerforming;
    std::function<void()> whenTicking;

    void change(const std::string& property, PropertyValue value) {
        observable_.willChange(property);
        values[property] = std::move(value);
        observable_.didChange(property);
    }

    PropertyValue valueForProperty(std::string_view property) const override {
        const auto found = values.find(property);
        return found == values.end() ? PropertyValue{} : found->second;
    }

    void setValueForProperty(std::string_view property, const PropertyValue& value) override {
        const bool* flag = std::get_if<bool>(&value);
        told.push_back("set " + std::string(property) + (flag && *flag ? " on" : " off"));
        if (acceptsChanges) values[std::string(property)] = value;
    }

    void setRowChecked(std::string_view property, std::size_t row, bool checked) override {
        told.push_back("row " + std::to_string(row) + " of " + std::string(property) +
                       (checked ? " on" : " off"));
        auto* rows = std::get_if<std::vector<ListRow>>(&values[std::string(property)]);
        if (acceptsChanges && rows) rows->at(row).checked = checked;
        if (whenTicking) whenTicking();
    }

    void performAction(std::string_view action, const void* sender) override {
        told.push_back("perform " + std::string(action));
        senders.push_back(sender);
        if (whenPerforming) whenPerforming(action);
    }

    bool shouldChangeText(std::string_view replacement) override {
        told.push_back("type " + std::string(replacement));
        return false;
    }

    Subscription observeProperties(std::function<void(std::string_view)> handler) override {
        return observable_.observe(
            [handler = std::move(handler)](Observable::Moment moment, std::string_view property) {
                if (moment == Observable::Moment::didChange) handler(property);
            });
    }

  private:
    Observable observable_;
};

}  // namespace installer::test
