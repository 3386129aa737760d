#include "platform/qt/QtWindow.h"

#include <QPushButton>
#include <QScreen>
#include <QStyle>

#include "platform/qt/WindowManners.h"

namespace installer {

void QtWindow::centerAndShow() {
    if (!window_) return;
    window_->ensurePolished();
    const QRect screen = window_->screen()->availableGeometry();
    const QSize size = window_->size().expandedTo(window_->sizeHint()).boundedTo(screen.size());
    window_->setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size, screen));
    if (!window_->focusWidget()) {
        if (QPushButton* button = WindowManners::defaultButton(*window_)) button->setFocus();
    }
    window_->show();
    window_->raise();
    window_->activateWindow();
}

void QtWindow::miniaturize() {
    if (window_) window_->showMinimized();
}

void QtWindow::close() {
    if (!window_) return;
    WindowManners::setClosable(*window_, true);
    window_->close();
}

}  // namespace installer
