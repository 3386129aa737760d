#pragma once

#include <QDBusConnection>
#include <QPalette>
#include <QTimer>
#include <optional>

namespace installer {

/// Whether the palette has light text on a dark background.
[[nodiscard]] bool isDark(const QPalette& palette);

/// Whether the application has to bring a dark palette itself: the desktop prefers dark, and the
/// palette that it gave the application is not.
/// @param preference the desktop's answer: 1 for dark, 2 for light, 0 for no preference; nullopt if
///     there is no answer.
[[nodiscard]] bool needsDarkPalette(std::optional<unsigned> preference,
                                    const QPalette& desktopPalette);

/// The palette that the application brings then.
[[nodiscard]] QPalette darkPalette();

/// Follows the desktop's preference for dark or light windows, at the start and whenever it
/// changes. Without a preference the palette stays as it is. Needs the application object.
class ColorScheme {
  public:
    /// Asks over the session bus and waits at most 0.2 seconds. Does not ask if the connection is
    /// not open.
    explicit ColorScheme(QDBusConnection sessionBus);
    ColorScheme(const ColorScheme&) = delete;
    ColorScheme& operator=(const ColorScheme&) = delete;
    ~ColorScheme();

    /// The connection to the session bus that the environment names; a closed connection if it
    /// names none. Never starts a bus.
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
