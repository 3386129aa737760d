#pragma once

#include "ports/window/Clipboard.h"

namespace installer {

class QtClipboard final : public Clipboard {
  public:
    void setText(const std::string& text) override;
};

}  // namespace installer
