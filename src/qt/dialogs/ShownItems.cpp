#include "qt/dialogs/ShownItems.h"

#include <QFileSystemModel>
#include <utility>

#include "foundation/values/PackageName.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

bool isAtOrAbove(const QString& path, const QString& folder) {
    return path == folder || folder.startsWith(path.endsWith(u'/') ? path : path + u'/');
}

}  // namespace

ShownItems::ShownItems(std::function<bool(const std::string& path)> shouldShow)
    : shouldShow_(std::move(shouldShow)) {}

void ShownItems::setSourceModel(QAbstractItemModel* model) {
    files_ = qobject_cast<QFileSystemModel*>(model);
    QSortFilterProxyModel::setSourceModel(model);
    if (files_ != nullptr)
        connect(files_, &QFileSystemModel::rootPathChanged, this, [this] { invalidateFilter(); });
}

void ShownItems::sort(int column, Qt::SortOrder order) {
    if (files_ != nullptr) files_->sort(column, order);
}

Qt::ItemFlags ShownItems::flags(const QModelIndex& index) const {
    const QString name = data(index, QFileSystemModel::FileNameRole).toString();
    if (isPackageName(fromQt(name))) return Qt::ItemNeverHasChildren;
    return QSortFilterProxyModel::flags(index);
}

bool ShownItems::filterAcceptsRow(int row, const QModelIndex& parent) const {
    if (files_ == nullptr) return false;
    const QString path = files_->filePath(files_->index(row, 0, parent));
    // The way to the folder that is shown must exist, or the panel has nowhere to be.
    return isAtOrAbove(path, files_->rootPath()) || shouldShow_(fromQt(path));
}

}  // namespace installer
