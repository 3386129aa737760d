#pragma once

#include <memory>

#include "ports/Authorization.h"

namespace installer {

/// Hands out one right to all that ask for one, so that the user is asked once although the run and
/// the receipt both need it.
class SharedAuthorizations final : public Authorizations {
  public:
    explicit SharedAuthorizations(std::unique_ptr<Authorizations> source)
        : source_(std::move(source)) {}

    [[nodiscard]] std::unique_ptr<Authorization> create() override;

    /// The right itself, made and obtained when it is first needed; null if this machine has no way
    /// to become the administrator.
    [[nodiscard]] Authorization* right();

  private:
    std::unique_ptr<Authorizations> source_;
    std::unique_ptr<Authorization> right_;
    bool isAsked_ = false;
};

}  // namespace installer
