#pragma once

#include <QDBusConnection>
#include <QPalette>
#include <QTimer>
#include <optional>

namespace installer {

/// Whether the palette is light text on a dark ground.
[[nodiscard]] bool isDark(const QPalette& palette);

/// Whether the application has to bring a dark palette itself: the desktop prefers dark, and the
/// palette that it gave the application is not.
/// @param preference the desktop's answer: 1 for dark, 2 for light, 0 for none; none when nobody
///     answered.
[[nodiscard]] bool needsDarkPalette(std::optional<unsigned> preference,
                                    const QPalette& desktopPalette);

/// Follows the desktop's preference for dark or light windows, at once and whenever it changes.
/// A desktop that says nothing leaves the palette as it is. Needs the application object.
class ColorScheme {
  public:
    /// Asks over the session bus and waits a fifth of a second at most. A connection that is not
    /// connected asks nobody.
    explicit ColorScheme(QDBusConnection sessionBus);
    ColorScheme(const ColorScheme&) = delete;
    ColorScheme& operator=(const ColorScheme&) = delete;
    ~ColorScheme();

    /// The connection to the session bus of the environment; where there is none, an unconnected
    /// one, and no bus is started.
    [[nodiscard]] static QDBusConnection sessionBus();

  private:
    [[nodiscard]] std::optional<unsigned> preference() const;
    void apply();

    QDBusConnection bus_;
    QTimer changed_;
    bool darkened_ = false;
    QPalette desktopPalette_;
};

}  // namespace installer
