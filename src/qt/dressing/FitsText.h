#pragma once

#include <QObject>
#include <QString>

class QTextBrowser;

namespace installer {

/// Makes a text browser no higher than its text, so that what follows stands right below it. A text
/// that is not long is the browser's name for screen readers too: they say the name alone.
class FitsText final : public QObject {
  public:
    /// Ends with the browser.
    explicit FitsText(QTextBrowser& browser);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();
    void nameByText();

    QTextBrowser& browser_;
    QString givenName_;
};

}  // namespace installer
