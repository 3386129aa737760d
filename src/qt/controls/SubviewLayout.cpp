#include "qt/controls/SubviewLayout.h"

#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace installer {

namespace {

// An item answers for a hidden widget that it needs no room, so the widgets are asked themselves.
QSize leastSize(const QWidget& view) {
    return view.minimumSizeHint().expandedTo(view.minimumSize()).boundedTo(view.maximumSize());
}

QSize wantedSize(const QWidget& view) {
    return view.sizeHint().expandedTo(leastSize(view)).boundedTo(view.maximumSize());
}

}  // namespace

SubviewLayout::SubviewLayout(QWidget& parent) : QLayout(&parent) {
    setContentsMargins(0, 0, 0, 0);
}

SubviewLayout::~SubviewLayout() = default;

void SubviewLayout::setFrame(QWidget& view, Frame frame) {
    frames_[&view] = frame;
    putInReadingOrder(view, frame);
    invalidate();
}

// Screen readers go through the views in the order in which they are stacked.
void SubviewLayout::putInReadingOrder(QWidget& view, const Frame& frame) {
    QWidget* next = nullptr;
    for (const auto& item : items_) {
        QWidget* other = item->widget();
        const auto found = frames_.find(other);
        if (found == frames_.end() || found->second.area.top() <= frame.area.top()) continue;
        if (!next || found->second.area.top() < frames_[next].area.top()) next = other;
    }
    if (next) view.stackUnder(next);
}

void SubviewLayout::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
}

int SubviewLayout::count() const {
    return static_cast<int>(items_.size());
}

QLayoutItem* SubviewLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* SubviewLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    const auto place = items_.begin() + index;
    QLayoutItem* item = place->release();
    items_.erase(place);
    frames_.erase(item->widget());
    return item;
}

QSize SubviewLayout::largest(Extent extent) const {
    QSize size(0, 0);
    for (const auto& item : items_) {
        const QWidget& view = *item->widget();
        QSize needed = extent == Extent::wanted ? wantedSize(view) : leastSize(view);
        if (const auto found = frames_.find(&view); found != frames_.end()) {
            const QRect& area = found->second.area;
            needed = QSize(
                found->second.spansWidth ? wantedSize(view).width() : area.left() + area.width(),
                area.top() + area.height());
        }
        size = size.expandedTo(needed);
    }
    return size;
}

QSize SubviewLayout::sizeHint() const {
    return largest(Extent::wanted);
}

QSize SubviewLayout::minimumSize() const {
    return largest(Extent::least);
}

bool SubviewLayout::hasHeightForWidth() const {
    return std::any_of(items_.begin(), items_.end(),
                       [](const auto& item) { return item->widget()->hasHeightForWidth(); });
}

int SubviewLayout::heightForWidth(int width) const {
    int height = minimumSize().height();
    for (const auto& item : items_) {
        const QWidget& view = *item->widget();
        if (frames_.contains(&view) || !view.hasHeightForWidth()) continue;
        height = std::max(height, view.heightForWidth(width));
    }
    return height;
}

Qt::Orientations SubviewLayout::expandingDirections() const {
    return Qt::Horizontal | Qt::Vertical;
}

void SubviewLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    for (const auto& item : items_) {
        QWidget& view = *item->widget();
        const auto found = frames_.find(&view);
        if (found == frames_.end()) {
            view.setGeometry(area);
            continue;
        }
        QRect place = found->second.area.translated(area.topLeft());
        if (found->second.spansWidth) {
            place.setLeft(area.left());
            place.setWidth(area.width());
        }
        view.setGeometry(QStyle::visualRect(parentWidget()->layoutDirection(), area, place));
    }
}

}  // namespace installer
