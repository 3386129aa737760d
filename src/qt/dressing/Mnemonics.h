#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <vector>

class QAbstractButton;
class QWidget;

namespace installer {

/// A label with the mark "&" before the letter that Alt presses the button with. Letters that are
/// taken are left out and the one found is added to them; a label without a free letter of an
/// alphabet gets a Latin one behind it in brackets, as is the custom where people write without an
/// alphabet. The label itself where every letter is taken.
[[nodiscard]] QString withMnemonic(const QString& label, QString& taken);

/// Gives every button of a window a letter while Alt is held down: a different one each, in any
/// language, whatever texts the maker has written. The letters are chosen at that moment, for what
/// is shown then; the texts are the maker's again when Alt is released.
class Mnemonics final : public QObject {
  public:
    /// Ends with the window.
    explicit Mnemonics(QWidget& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Marked {
        QPointer<QAbstractButton> button;
        QString text;
        QString marked;
        QString accessibleName;
    };

    void mark();
    void unmark();

    QWidget& window_;
    std::vector<Marked> marked_;
};

}  // namespace installer
