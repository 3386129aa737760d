#pragma once

#include <QLayout>
#include <QRect>
#include <map>
#include <memory>
#include <vector>

namespace installer {

/// Lays out the views inside a view that has no layout of its own. A view with a frame gets that
/// frame, measured from the top. A view without a frame is a page and fills the whole area. The
/// size is large enough for all of them, also for hidden ones, so a window keeps its size when the
/// pages change.
class SubviewLayout final : public QLayout {
  public:
    struct Frame {
        QRect area;  ///< from the upper left corner, which is the upper right one right to left
        bool spansWidth = false;
    };

    explicit SubviewLayout(QWidget& parent);
    ~SubviewLayout() override;

    /// Sets the frame of a view of this layout.
    void setFrame(QWidget& view, Frame frame);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    [[nodiscard]] QLayoutItem* takeAt(int index) override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override;
    void setGeometry(const QRect& area) override;

  private:
    enum class Extent { wanted, least };
    void putInReadingOrder(QWidget& view, const Frame& frame);
    [[nodiscard]] QSize largest(Extent extent) const;

    std::vector<std::unique_ptr<QLayoutItem>> items_;
    std::map<const QWidget*, Frame> frames_;
};

}  // namespace installer
