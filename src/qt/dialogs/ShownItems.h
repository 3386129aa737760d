#pragma once

#include <QSortFilterProxyModel>
#include <functional>
#include <string>

class QFileSystemModel;

namespace installer {

/// The files and folders of a folder panel, without those that are not to be shown. Packages are
/// items that can be neither entered nor chosen.
class ShownItems final : public QSortFilterProxyModel {
  public:
    explicit ShownItems(std::function<bool(const std::string& path)> shouldShow);

    /// Takes a file system model.
    void setSourceModel(QAbstractItemModel* model) override;
    /// The file system model sorts, in the way in which people sort names.
    void sort(int column, Qt::SortOrder order) override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

  protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    std::function<bool(const std::string& path)> shouldShow_;
    QFileSystemModel* files_ = nullptr;
};

}  // namespace installer
