#include "qt/theme/ColorScheme.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusVariant>

#include "qt/theme/WindowStyle.h"

namespace installer {

namespace {

constexpr QLatin1String service("org.freedesktop.portal.Desktop");
constexpr QLatin1String object("/org/freedesktop/portal/desktop");
constexpr QLatin1String settings("org.freedesktop.portal.Settings");
constexpr QLatin1String group("org.freedesktop.appearance");
constexpr QLatin1String key("color-scheme");
constexpr QLatin1String changeSignal("SettingChanged");

constexpr int patienceInMilliseconds = 200;
constexpr unsigned prefersDark = 1;

}  // namespace

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() <
           palette.color(QPalette::WindowText).lightness();
}

bool needsDarkPalette(std::optional<unsigned> preference, const QPalette& desktopPalette) {
    return preference == prefersDark && !isDark(desktopPalette);
}

QPalette darkPalette() {
    const QColor ground(0x2b, 0x2b, 0x2e);
    const QColor text(0xee, 0xee, 0xf0);
    const QColor quiet(0x8c, 0x8c, 0x92);
    QPalette palette(QColor(0x3a, 0x3a, 0x3e), ground);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x26, 0x29));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::PlaceholderText, quiet);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3a, 0x3e));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xca));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x7a, 0xb4, 0xff));
    palette.setColor(QPalette::LinkVisited, QColor(0xc4, 0xa2, 0xf5));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, quiet);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4a, 0x4a, 0x4f));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, quiet);
    return palette;
}

QDBusConnection ColorScheme::sessionBus() {
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return QDBusConnection(QStringLiteral("none"));
    return QDBusConnection::sessionBus();
}

ColorScheme::ColorScheme(QDBusConnection sessionBus) : bus_(std::move(sessionBus)) {
    if (!bus_.isConnected()) return;
    changed_.setSingleShot(true);
    QObject::connect(&changed_, &QTimer::timeout, [this] { apply(); });
    // The signal starts a timer, which has the slot that the bus needs; the answer is asked for.
    bus_.connect(service, object, settings, changeSignal, {group, key}, QString(), &changed_,
                 SLOT(start()));
    apply();
}

ColorScheme::~ColorScheme() {
    bus_.disconnect(service, object, settings, changeSignal, {group, key}, QString(), &changed_,
                    SLOT(start()));
}

std::optional<unsigned> ColorScheme::preference() const {
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, object, settings, QStringLiteral("Read"));
    question << QString(group) << QString(key);
    const QDBusMessage answer = bus_.call(question, QDBus::Block, patienceInMilliseconds);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return std::nullopt;
    QVariant value = answer.arguments().constFirst();
    // The portal wraps the value twice.
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    bool isNumber = false;
    const unsigned number = value.toUInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

void ColorScheme::apply() {
    if (!darkened_) desktopPalette_ = QApplication::palette();
    if (needsDarkPalette(preference(), desktopPalette_) == darkened_) return;
    darkened_ = !darkened_;
    if (!darkened_) {
        QApplication::setPalette(QPalette());
        return;
    }
    WindowStyle::setApplicationStyle();
    QApplication::setPalette(darkPalette());
}

}  // namespace installer
