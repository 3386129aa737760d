#pragma once

#include <QObject>

class QTextBrowser;

namespace installer {

/// Makes a text browser no higher than its text, so that what follows stands right below it.
class FitsText final : public QObject {
  public:
    /// Ends with the browser.
    explicit FitsText(QTextBrowser& browser);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QTextBrowser& browser_;
};

}  // namespace installer
