#pragma once

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "foundation/observers/Subscription.h"

namespace installer {

/// Handlers of one kind of notice, called in the order in which they were added. A handler may add
/// and remove handlers, itself included, and destroy this object. Handles may outlive it.
template <class... Arguments>
class Handlers {
  public:
    using Handler = std::function<void(Arguments...)>;

    [[nodiscard]] Subscription add(Handler handler) {
        const int key = ++lastKey_;
        handlers_->emplace(key, std::move(handler));
        return Subscription([handlers = std::weak_ptr<Map>(handlers_), key] {
            if (const auto remaining = handlers.lock()) remaining->erase(key);
        });
    }

    void call(const Arguments&... arguments) const {
        const std::shared_ptr<Map> handlers = handlers_;
        std::vector<int> keys;
        for (const auto& [key, handler] : *handlers) keys.push_back(key);
        for (const int key : keys) {
            const auto found = handlers->find(key);
            if (found == handlers->end()) continue;
            // A handler that removes itself lives on until it returns.
            const Handler handler = found->second;
            handler(arguments...);
        }
    }

  private:
    using Map = std::map<int, Handler>;
    std::shared_ptr<Map> handlers_ = std::make_shared<Map>();
    int lastKey_ = 0;
};

}  // namespace installer
