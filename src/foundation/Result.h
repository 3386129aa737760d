#pragma once

#include <optional>
#include <system_error>
#include <utility>

namespace installer {

/// The outcome of an operation that gives a value or an error. Exactly one of the two is there:
/// `error()` of a success is the empty code, `value()` of a failure must not be asked for.
template <class Value>
class [[nodiscard]] Result {
  public:
    // Implicit on purpose: an operation returns its value or its error code as it stands.
    Result(Value value) : value_(std::move(value)) {}
    Result(std::error_code error) : error_(error) {}

    explicit operator bool() const { return value_.has_value(); }
    const Value& value() const& { return *value_; }
    Value& value() & { return *value_; }
    Value&& value() && { return *std::move(value_); }
    std::error_code error() const { return error_; }

  private:
    std::optional<Value> value_;
    std::error_code error_;
};

}  // namespace installer
