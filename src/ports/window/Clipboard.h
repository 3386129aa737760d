#pragma once

#include <string>

namespace installer {

class Clipboard {
  public:
    virtual ~Clipboard() = default;
    virtual void setText(const std::string& text) = 0;
};

}  // namespace installer
