#include "qt/controls/Announcement.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QTimer>
#include <QWidget>

namespace installer {

namespace {

/// Shows nothing and takes neither place nor input.
class Notification final : public QWidget {
  public:
    explicit Notification(QWidget& window) : QWidget(&window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
        setFixedSize(1, 1);
        hide();
        lower();
    }

    [[nodiscard]] static Notification* of(const QWidget& window) {
        for (QObject* child : window.children()) {
            if (auto* found = dynamic_cast<Notification*>(child)) return found;
        }
        return nullptr;
    }
};

QAccessibleInterface* makeAccessibleAnnouncement(const QString& /*className*/, QObject* object) {
    auto* notification = dynamic_cast<Notification*>(object);
    if (notification == nullptr) return nullptr;
    return new QAccessibleWidget(notification, QAccessible::Notification);
}

}  // namespace

void Announcement::tellScreenReaders() {
    QAccessible::installFactory(makeAccessibleAnnouncement);
}

void Announcement::make(QWidget& window, const QString& text) {
    // A new one each time: of two changes of one control, a screen reader may miss the second.
    delete Notification::of(window);
    if (text.isEmpty()) return;
    auto* notification = new Notification(window);
    notification->setAccessibleName(text);
    // Pages that are left at once are not spoken of.
    QTimer::singleShot(0, notification, [notification, &window] {
        if (window.isActiveWindow()) notification->show();
    });
}

}  // namespace installer
