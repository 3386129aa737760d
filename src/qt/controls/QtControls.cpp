#include "qt/controls/QtControls.h"

#include <QApplication>
#include <QEvent>
#include <optional>

#include "qt/theme/ReadableColor.h"
#include "qt/values/Picture.h"
#include "qt/values/QtText.h"

namespace installer {

class QtTextField::Look final : public QObject {
  public:
    explicit Look(QLabel& label) : QObject(&label), label_(label) {
        label.installEventFilter(this);
        if (QWidget* row = label.parentWidget()) row->installEventFilter(this);
    }

    void setWeight(Weight weight) {
        weight_ = weight;
        applyFont();
    }

    void setColor(Color color) {
        color_ = color;
        applyColor();
    }

    // A text that turns bold and back must not push its neighbours around.
    void keepRoomForBold() {
        const QFont font = label_.font();
        QFont bold = font;
        bold.setBold(true);
        label_.setMinimumWidth(0);
        label_.setFont(bold);
        const int width = label_.sizeHint().width();
        label_.setFont(font);
        label_.setMinimumWidth(width);
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        // A font of the label's own keeps the desktop's changes away from it, but not from its row.
        if (event->type() == QEvent::FontChange && watched != &label_) applyFont();
        if (event->type() == QEvent::PaletteChange && watched == &label_) applyColor();
        return false;
    }

  private:
    void applyFont() {
        if (!weight_) return;
        QFont font = QApplication::font();
        font.setBold(*weight_ == Weight::bold);
        label_.setFont(font);
        keepRoomForBold();
    }

    void applyColor() {
        if (!color_) return;
        QPalette palette = label_.palette();
        const QColor wanted(color_->red, color_->green, color_->blue);
        const QColor shown = counterpart(wanted, palette.color(QPalette::Window));
        if (palette.color(QPalette::WindowText) == shown) return;
        palette.setColor(QPalette::WindowText, shown);
        label_.setPalette(palette);
    }

    QLabel& label_;
    std::optional<Weight> weight_;
    std::optional<Color> color_;
};

QtTextField::QtTextField(QLabel* label) : label_(label), look_(new Look(*label)) {
    label_->setTextFormat(Qt::PlainText);
}

void QtTextField::setText(const std::string& text) {
    if (!label_) return;
    label_->setText(toQt(text));
    look_->keepRoomForBold();
}

void QtTextField::setSystemFont(Weight weight) {
    if (label_) look_->setWeight(weight);
}

void QtTextField::setColor(Color color) {
    if (label_) look_->setColor(color);
}

class QtImageView::Look final : public QObject {
  public:
    explicit Look(QLabel& label) : QObject(&label), label_(label) {
        label.installEventFilter(this);
    }

    void setImage(const Image& image) {
        image_ = image;
        show();
    }

    void setAccessibleName(const std::string& name) { label_.setAccessibleName(toQt(name)); }

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::PaletteChange) show();
        return false;
    }

  private:
    void show() { showPicture(label_, pictureFor(label_.palette(), image_)); }

    QLabel& label_;
    Image image_;
};

QtImageView::QtImageView(QLabel* label) {
    // The label may have been given to another view before.
    for (QObject* child : label->children()) {
        if (auto* look = dynamic_cast<Look*>(child)) look_ = look;
    }
    if (!look_) look_ = new Look(*label);
}

void QtImageView::setImage(const Image& image) {
    if (look_) look_->setImage(image);
}

void QtImageView::setAccessibleName(const std::string& name) {
    if (look_) look_->setAccessibleName(name);
}

void QtListSelection::setSelectedRow(std::size_t row) {
    if (!list_) return;
    if (row >= static_cast<std::size_t>(list_->count())) {
        list_->clearSelection();
        return;
    }
    list_->setCurrentRow(static_cast<int>(row), QItemSelectionModel::ClearAndSelect);
    list_->scrollToItem(list_->currentItem());
}

std::optional<std::size_t> QtListSelection::selectedRow() const {
    if (!list_) return std::nullopt;
    const auto rows = list_->selectionModel()->selectedIndexes();
    if (rows.isEmpty()) return std::nullopt;
    return static_cast<std::size_t>(rows.first().row());
}

}  // namespace installer
