#pragma once

#include <QObject>

#include "ports/window/InterfaceOwner.h"

class QTextBrowser;

namespace installer {

/// Asks the owner about everything that the user types into a text. The answer is ignored: the text
/// is never edited. Return is passed on as a line feed.
class GuardedText final : public QObject {
  public:
    GuardedText(QTextBrowser& browser, InterfaceOwner& owner, QObject& lifetime);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    InterfaceOwner& owner_;
};

}  // namespace installer
