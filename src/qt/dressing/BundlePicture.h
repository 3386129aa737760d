#pragma once

#include <QObject>
#include <string>

class QLabel;

namespace installer {

class Bundle;

/// A picture of the maker's in a label, for light and for dark windows: NAME.png, and in a dark
/// window NAME-Dark.png where the bundle has that too. The label is hidden where the bundle has
/// no such picture or it cannot be read.
class BundlePicture final : public QObject {
  public:
    /// Ends with the label. The bundle outlives it.
    BundlePicture(QLabel& label, std::string name, const Bundle& bundle);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void show();

    QLabel& label_;
    std::string name_;
    const Bundle& bundle_;
    std::string shown_;
};

}  // namespace installer
