#pragma once

#include "platform/Clipboard.h"

namespace installer {

class QtClipboard final : public Clipboard {
  public:
    void setText(const std::string& text) override;
};

}  // namespace installer
