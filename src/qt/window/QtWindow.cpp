#include "qt/window/QtWindow.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>

#include "qt/controls/WindowManners.h"

namespace installer {

namespace {

/// How much larger the user's texts are than those that the descriptions were drawn with.
double textScale(const QWidget& widget) {
    constexpr double drawnWith = 10;
    return std::max(1.0, widget.font().pointSizeF() / drawnWith);
}

}  // namespace

void QtWindow::centerAndShow() {
    if (!window_) return;
    window_->ensurePolished();
    const QRect screen = window_->screen()->availableGeometry();
    const QSize size = (window_->size() * textScale(*window_))
                           .expandedTo(window_->sizeHint())
                           .boundedTo(screen.size());
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
    // A question that is still open would keep the application alive; closing it declines it.
    if (QWidget* question = QApplication::activeModalWidget()) question->close();
    WindowManners::setClosable(*window_, true);
    window_->close();
}

}  // namespace installer
