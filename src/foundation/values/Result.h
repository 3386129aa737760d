#pragma once

#include <system_error>
#include <utility>
#include <variant>

namespace installer {

/// A value or an error, never both. `error()` of a success is the empty code. Do not call `value()`
/// of a failure.
template <class Value>
class [[nodiscard]] Result {
  public:
    // Implicit on purpose: an operation returns its value or its error code as it stands.
    Result(Value value) : outcome_(std::in_place_index<0>, std::move(value)) {}
    Result(std::error_code error) : outcome_(std::in_place_index<1>, error) {}

    explicit operator bool() const { return outcome_.index() == 0; }
    const Value& value() const& { return *std::get_if<0>(&outcome_); }
    Value& value() & { return *std::get_if<0>(&outcome_); }
    Value&& value() && { return std::move(*std::get_if<0>(&outcome_)); }
    std::error_code error() const {
        const auto* error = std::get_if<1>(&outcome_);
        return error == nullptr ? std::error_code() : *error;
    }

  private:
    std::variant<Value, std::error_code> outcome_;
};

}  // namespace installer
