#include "qt/dressing/BehindQuestion.h"

#include <QApplication>
#include <QWidget>

namespace installer {

bool isBehindQuestion(const QObject& control) {
    const QWidget* question = QApplication::activeModalWidget();
    if (question == nullptr) return false;
    for (const QObject* object = &control; object != nullptr; object = object->parent()) {
        const auto* widget = qobject_cast<const QWidget*>(object);
        if (widget != nullptr) return widget->window() != question;
    }
    return false;
}

}  // namespace installer
