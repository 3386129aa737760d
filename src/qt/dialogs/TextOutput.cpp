#include "qt/dialogs/TextOutput.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QSaveFile>
#include <QTextBrowser>
#include <QVariant>

#include "ports/Bundle.h"
#include "ports/window/DescriptionProperties.h"
#include "qt/dressing/BehindQuestion.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

QTextBrowser* namedBrowser(const QWidget& root, const QObject& button, const char* property) {
    const QString name = button.property(property).toString();
    return name.isEmpty() ? nullptr : root.findChild<QTextBrowser*>(name);
}

/// Asks where to, and again where that was not possible.
void askAndSave(const QTextBrowser& text, const QString& title, const QString& failure) {
    QString path = QDir::home().filePath(text.accessibleName() + QLatin1String(".txt"));
    while (true) {
        path = QFileDialog::getSaveFileName(text.window(), title, path);
        if (path.isEmpty() || saveText(text, path)) return;
        QMessageBox::warning(text.window(), title, failure + QLatin1String("\n") + path);
    }
}

}  // namespace

void connectTextOutput(QWidget& root, const Bundle& bundle) {
    const QString failure = toQt(bundle.localizedString("save_failed", "Localizable").value_or(""));
    for (auto* button : root.findChildren<QAbstractButton*>()) {
        if (QTextBrowser* text = namedBrowser(root, *button, printsProperty)) {
            QObject::connect(button, &QAbstractButton::clicked, text, [text] {
                if (!isBehindQuestion(*text)) printText(*text);
            });
        }
        if (QTextBrowser* text = namedBrowser(root, *button, savesProperty)) {
            QObject::connect(button, &QAbstractButton::clicked, text, [button, text, failure] {
                if (!isBehindQuestion(*text)) askAndSave(*text, button->text(), failure);
            });
        }
    }
}

void printText(QTextBrowser& text) {
    QPrinter printer;
    QPrintDialog dialog(&printer, text.window());
    if (dialog.exec() == QDialog::Accepted) text.print(&printer);
}

bool saveText(const QTextBrowser& text, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    const QByteArray bytes = text.toPlainText().toUtf8() + '\n';
    return file.write(bytes) == bytes.size() && file.commit();
}

}  // namespace installer
