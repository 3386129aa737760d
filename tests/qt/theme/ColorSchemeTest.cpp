#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QPalette>
#include <QProcess>
#include <QThread>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "qt/theme/ColorScheme.h"

namespace {

using namespace installer;

QPalette lightPalette() {
    return {Qt::lightGray, Qt::white};
}

TEST(ColorSchemeNeedsDarkPalette, HoldsWhenTheDesktopPrefersDarkAndTheApplicationIsLight) {
    EXPECT_TRUE(needsDarkPalette(1U, lightPalette()));
    EXPECT_FALSE(needsDarkPalette(0U, lightPalette()));
    EXPECT_FALSE(needsDarkPalette(2U, lightPalette()));
    EXPECT_FALSE(needsDarkPalette(std::nullopt, lightPalette()));
}

TEST(ColorSchemeNeedsDarkPalette, DoesNotHoldWhereTheDesktopHasGivenOneAlready) {
    QPalette dark = lightPalette();
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    EXPECT_FALSE(needsDarkPalette(1U, dark));
}

/// A session bus of this test's own.
class PrivateBus {
  public:
    PrivateBus() {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"),
                       QStringLiteral("--print-address")});
        while (!daemon_.canReadLine() && daemon_.waitForReadyRead()) {
        }
        address_ = QString::fromUtf8(daemon_.readLine().trimmed());
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        daemon_.kill();
        daemon_.waitForFinished();
    }
    [[nodiscard]] const QString& address() const { return address_; }

  private:
    QProcess daemon_;
    QString address_;
};

/// Stands in for the desktop's portal, on a thread of its own since its caller waits for it.
class Portal final : public QDBusVirtualObject {
  public:
    enum class Behaviour { answers, isSilent };

    explicit Portal(const QString& address, Behaviour behaviour = Behaviour::answers)
        : behaviour_(behaviour),
          bus_(QDBusConnection::connectToBus(address, QStringLiteral("portal"))) {
        moveToThread(&thread_);
        thread_.start();
        EXPECT_TRUE(
            bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this));
        EXPECT_TRUE(bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    Portal(const Portal&) = delete;
    Portal& operator=(const Portal&) = delete;
    ~Portal() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
        thread_.quit();
        thread_.wait();
    }

    void prefer(unsigned scheme) { scheme_ = scheme; }
    void announce(const char* group, const char* key) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << QString::fromUtf8(group) << QString::fromUtf8(key)
               << QVariant::fromValue(QDBusVariant(scheme_.load()));
        EXPECT_TRUE(bus_.send(signal));
    }
    [[nodiscard]] int questions() const { return questions_; }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != QStringLiteral("Read") ||
            message.arguments() != QVariantList{QStringLiteral("org.freedesktop.appearance"),
                                                QStringLiteral("color-scheme")})
            return false;
        ++questions_;
        if (behaviour_ == Behaviour::isSilent) return true;
        const QDBusVariant inner(scheme_.load());
        return connection.send(
            message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }

  private:
    Behaviour behaviour_;
    std::atomic<unsigned> scheme_ = 0;
    std::atomic<int> questions_ = 0;
    QThread thread_;
    QDBusConnection bus_;
};

class ColorSchemeTest : public testing::Test {
  protected:
    ColorSchemeTest() { QApplication::setPalette(QPalette()); }
    ~ColorSchemeTest() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("client"));
        QApplication::setPalette(QPalette());
    }

    QDBusConnection client() {
        return QDBusConnection::connectToBus(bus.address(), QStringLiteral("client"));
    }
    static bool isDarkNow() { return isDark(QApplication::palette()); }
    static void turnUntil(const std::function<bool()>& happened) {
        while (!happened()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    PrivateBus bus;
};

TEST_F(ColorSchemeTest, IsDarkWhereTheDesktopPrefersDark) {
    Portal portal(bus.address());
    portal.prefer(1);
    const ColorScheme scheme(client());
    EXPECT_TRUE(isDarkNow());
}

TEST_F(ColorSchemeTest, IsLeftAloneWhereTheDesktopPrefersNothing) {
    const Portal portal(bus.address());
    const QPalette before = QApplication::palette();
    const ColorScheme scheme(client());
    EXPECT_EQ(portal.questions(), 1);
    EXPECT_EQ(QApplication::palette(), before);
}

TEST_F(ColorSchemeTest, FollowsTheDesktop) {
    Portal portal(bus.address());
    const QPalette before = QApplication::palette();
    const ColorScheme scheme(client());
    portal.prefer(1);
    portal.announce("org.freedesktop.appearance", "color-scheme");
    turnUntil([] { return isDarkNow(); });
    portal.prefer(2);
    portal.announce("org.freedesktop.appearance", "color-scheme");
    turnUntil([] { return !isDarkNow(); });
    EXPECT_EQ(QApplication::palette(), before);
}

TEST_F(ColorSchemeTest, DoesNotAskAgainForOtherSettings) {
    Portal portal(bus.address());
    const ColorScheme scheme(client());
    portal.announce("org.freedesktop.appearance", "contrast");
    portal.prefer(1);
    portal.announce("org.freedesktop.appearance", "color-scheme");
    turnUntil([] { return isDarkNow(); });
    EXPECT_EQ(portal.questions(), 2);
}

TEST_F(ColorSchemeTest, IsLeftAloneWithoutAPortal) {
    const ColorScheme scheme(client());
    EXPECT_FALSE(isDarkNow());
}

TEST_F(ColorSchemeTest, APortalThatDoesNotAnswerHoldsNobodyUp) {
    const Portal portal(bus.address(), Portal::Behaviour::isSilent);
    const ColorScheme scheme(client());
    EXPECT_FALSE(isDarkNow());
}

TEST(ColorScheme, AsksNobodyWithoutASessionBus) {
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_FALSE(ColorScheme::sessionBus().isConnected());
    const ColorScheme scheme(ColorScheme::sessionBus());
    EXPECT_FALSE(isDark(QApplication::palette()));
}

}  // namespace
