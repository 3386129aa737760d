#pragma once

#include <QObject>

class QTextBrowser;

namespace installer {

/// Keeps the lines of a long text short enough to be read: in a wide window the text stands in a
/// column in the middle.
class ReadingColumn final : public QObject {
  public:
    /// Ends with the browser.
    explicit ReadingColumn(QTextBrowser& browser);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void apply();

    QTextBrowser& browser_;
};

}  // namespace installer
