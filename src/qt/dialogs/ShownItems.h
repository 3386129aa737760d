#pragma once

#include <QSortFilterProxyModel>
#include <functional>
#include <string>

class QFileSystemModel;

namespace installer {

/// The files and folders of a folder panel, without the hidden ones. A package is an item that
/// cannot be entered or chosen.
class ShownItems final : public QSortFilterProxyModel {
  public:
    explicit ShownItems(std::function<bool(const std::string& path)> shouldShow);

    /// Takes a file system model.
    void setSourceModel(QAbstractItemModel* model) override;
    /// Sorted by the file system model, in natural order.
    void sort(int column, Qt::SortOrder order) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

  protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    std::function<bool(const std::string& path)> shouldShow_;
    QFileSystemModel* files_ = nullptr;
};

}  // namespace installer
