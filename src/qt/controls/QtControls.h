#pragma once

#include <QLabel>
#include <QListWidget>
#include <QPointer>

#include "ports/window/View.h"

namespace installer {

/// Font and colour stay what was asked for when the desktop changes its font or its colours.
class QtTextField final : public TextField {
  public:
    explicit QtTextField(QLabel* label);
    void setText(const std::string& text) override;
    void setSystemFont(Weight weight) override;
    /// Takes a colour for a white background. A darker background gets its counterpart.
    void setColor(Color color) override;

  private:
    class Look;

    QPointer<QLabel> label_;
    QPointer<Look> look_;  ///< the label's
};

/// In a dark window it shows the picture's dark variant where there is one (`pictureFor`).
class QtImageView final : public ImageView {
  public:
    explicit QtImageView(QLabel* label);
    void setImage(const Image& image) override;
    void setAccessibleName(const std::string& name) override;

  private:
    class Look;

    QPointer<Look> look_;  ///< the label's
};

class QtListSelection final : public ListSelection {
  public:
    explicit QtListSelection(QListWidget* list) : list_(list) {}
    void setSelectedRow(std::size_t row) override;
    [[nodiscard]] std::optional<std::size_t> selectedRow() const override;

  private:
    QPointer<QListWidget> list_;
};

}  // namespace installer
