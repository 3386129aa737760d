#pragma once

#include <QString>

class QTextBrowser;
class QWidget;

namespace installer {

class Bundle;

/// Connects the buttons of a description that print a text or save it as a file: those whose
/// property `prints` or `saves` names a text browser of the same description. The bundle outlives
/// the controls.
void connectTextOutput(QWidget& root, const Bundle& bundle);

/// Asks for a printer, and prints on it.
void printText(QTextBrowser& text);

/// Writes the text's characters, in UTF-8, all or nothing; whether that was possible.
[[nodiscard]] bool saveText(const QTextBrowser& text, const QString& path);

}  // namespace installer
