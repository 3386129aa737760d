#include "foundation/observers/Observable.h"

#include <utility>

namespace installer {

Subscription Observable::observe(Observer observer) {
    return observers_.add(std::move(observer));
}

void Observable::willChange(std::string_view property) {
    observers_.call(Moment::willChange, property);
}

void Observable::didChange(std::string_view property) {
    observers_.call(Moment::didChange, property);
}

}  // namespace installer
