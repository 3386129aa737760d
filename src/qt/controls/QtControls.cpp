#include "qt/controls/QtControls.h"

#include <QApplication>

#include "qt/theme/ReadableColor.h"
#include "qt/values/Picture.h"
#include "qt/values/QtText.h"

namespace installer {

QtTextField::QtTextField(QLabel* label) : label_(label) {
    label_->setTextFormat(Qt::PlainText);
}

void QtTextField::setText(const std::string& text) {
    if (!label_) return;
    label_->setText(toQt(text));
    keepRoomForBold();
}

void QtTextField::setSystemFont(Weight weight) {
    if (!label_) return;
    QFont font = QApplication::font();
    font.setBold(weight == Weight::bold);
    label_->setFont(font);
    keepRoomForBold();
}

void QtTextField::setColor(Color color) {
    if (!label_) return;
    QPalette palette = label_->palette();
    const QColor wanted(color.red, color.green, color.blue);
    palette.setColor(QPalette::WindowText, readableColor(wanted, palette.color(QPalette::Window)));
    label_->setPalette(palette);
}

// A text that turns bold and back must not push its neighbours around.
void QtTextField::keepRoomForBold() {
    const QFont font = label_->font();
    QFont bold = font;
    bold.setBold(true);
    label_->setMinimumWidth(0);
    label_->setFont(bold);
    const int width = label_->sizeHint().width();
    label_->setFont(font);
    label_->setMinimumWidth(width);
}

void QtImageView::setImage(const Image& image) {
    if (label_) showPicture(*label_, image);
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
