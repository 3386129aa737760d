#pragma once

namespace installer {

/// A step's part of the window. The window owns it; the current step shows and hides it.
class View {
  public:
    virtual ~View() = default;
    virtual void setHidden(bool hidden) = 0;
};

}  // namespace installer
