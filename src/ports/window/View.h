#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "foundation/text/StyledText.h"
#include "ports/window/Image.h"

namespace installer {

// Parts of the window, as far as the core itself acts on them; what they show is bound to
// properties (InterfaceOwner.h). They are made from an interface description. Acting on one whose
// window is gone does nothing.

/// In points, with y growing upwards.
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0;
    double height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// A part of the window that can hold others.
class View {
  public:
    virtual ~View() = default;

    virtual void setHidden(bool hidden) = 0;

    [[nodiscard]] virtual Size size() const { return {}; }

    /// Places the view in its parent, whose origin is its lower left corner. A view that spans
    /// the parent's width goes on doing so, and one placed from the top stays there, when the
    /// parent is resized.
    virtual void setFrame(Point /*origin*/, Size /*size*/) {}

    virtual void addSubview(const std::shared_ptr<View>& /*child*/) {}

    /// Null when the view was not put anywhere.
    [[nodiscard]] virtual std::shared_ptr<View> superview() const { return nullptr; }
};

/// A text of one line that the core itself styles.
class TextField {
  public:
    enum class Weight { regular, bold };

    virtual ~TextField() = default;
    virtual void setText(const std::string& text) = 0;
    /// The system's font at the system's size.
    virtual void setSystemFont(Weight weight) = 0;
    virtual void setColor(Color color) = 0;
};

class ImageView {
  public:
    virtual ~ImageView() = default;
    virtual void setImage(const Image& image) = 0;
    /// What a screen reader says of it.
    virtual void setAccessibleName(const std::string& /*name*/) {}
};

/// The selected row of a list. It has nothing to do with the rows' check boxes.
class ListSelection {
  public:
    virtual ~ListSelection() = default;
    /// Makes the row the only selected one; a row that does not exist selects none.
    virtual void setSelectedRow(std::size_t row) = 0;
    [[nodiscard]] virtual std::optional<std::size_t> selectedRow() const = 0;
};

/// Shows how far something has come.
class ProgressIndicator {
  public:
    virtual ~ProgressIndicator() = default;

    /// From 0 to 1. Shows it soon, without handling input, timers or notices. Cheap to call often.
    virtual void setFraction(double fraction) = 0;
};

class Window {
  public:
    virtual ~Window() = default;
    /// Makes the window appear, in the middle of the screen.
    virtual void centerAndShow() = 0;
    virtual void miniaturize() = 0;
    /// Closes the window without asking anybody. The application ends with its last window.
    virtual void close() = 0;
};

}  // namespace installer
