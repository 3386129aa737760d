#include "qt/window/WaitingWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QScreen>
#include <QStyle>
#include <QTimer>

#include "qt/controls/WaitingSign.h"

namespace installer {

WaitingWindow::WaitingWindow() {
    constexpr QSize signSize(32, 32);
    constexpr int margin = 32;
    const QString name = QGuiApplication::applicationDisplayName();
    setWindowTitle(name);
    setWindowFlag(Qt::WindowCloseButtonHint, false);
    // The application goes on when this window has gone.
    setAttribute(Qt::WA_QuitOnClose, false);

    auto* sign = new QLabel(this);
    sign->setAccessibleName(name);
    sign->setFixedSize(signSize);
    (new WaitingSign(*sign))->setWaiting(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(margin, margin, margin, margin);
    row->setSpacing(margin / 2);
    row->addWidget(sign);
    row->addWidget(new QLabel(name, this));

    const QRect area = screen()->availableGeometry();
    setGeometry(QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, sizeHint(), area));
    qApp->installEventFilter(this);
}

void WaitingWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
}

bool WaitingWindow::eventFilter(QObject* object, QEvent* event) {
    // A widget hears of this before the display does.
    if (event->type() == QEvent::Show && object != this && object->isWidgetType() &&
        static_cast<QWidget*>(object)->isWindow()) {
        qApp->removeEventFilter(this);
        hide();
        // A deferred deletion that is asked for before the main loop runs waits until the main loop
        // ends.
        QTimer::singleShot(0, this, [this] { delete this; });
    }
    return QWidget::eventFilter(object, event);
}

}  // namespace installer
