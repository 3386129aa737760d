#include "qt/dialogs/QtFolderPanel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QStyle>

#include "foundation/values/PackageName.h"
#include "qt/dialogs/ShownItems.h"
#include "qt/dialogs/WindowOnTop.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

QString existingFolder(const QString& wanted) {
    QString folder = QDir::cleanPath(wanted);
    if (!QDir::isAbsolutePath(folder)) return QDir::homePath();
    while (!QFileInfo(folder).isDir() && folder != QDir::rootPath())
        folder = QFileInfo(folder).path();
    return folder;
}

class Panel final : public QFileDialog {
  public:
    Panel(QWidget* parent, const FolderRequest& request)
        : QFileDialog(parent, toQt(request.title)), request_(request) {
        setObjectName(QStringLiteral("folder-panel"));
        setOptions(DontUseNativeDialog | DontResolveSymlinks);
        setFileMode(Directory);
        // Which items are shown is the request's concern, files among them.
        setOption(ShowDirsOnly, false);
        setProxyModel(new ShownItems(request.shouldShow));
        setDirectory(existingFolder(toQt(request.startFolder)));
        if (!request.prompt.empty()) setLabelText(Accept, toQt(request.prompt));
        if (!request.message.empty()) showMessage(toQt(request.message));
    }

    [[nodiscard]] QString chosenFolder() const { return selectedFiles().value(0); }

  protected:
    /// What was typed must be something that the panel offers, too.
    void accept() override {
        const QString chosen = chosenFolder();
        if (chosen == directory().path() || isOffered(chosen)) QFileDialog::accept();
    }

  private:
    void showMessage(const QString& message) {
        auto* label = new QLabel(message);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setMargin(style()->pixelMetric(QStyle::PM_LayoutLeftMargin));
        setAccessibleDescription(message);
        // The dialog's layout has no row to spare above its first one but this.
        layout()->setMenuBar(label);
    }

    [[nodiscard]] bool isOffered(const QString& path) const {
        return !isPackageName(fromQt(QFileInfo(path).fileName())) &&
               request_.shouldShow(fromQt(path));
    }

    const FolderRequest& request_;
};

}  // namespace

std::optional<std::string> QtFolderPanel::runModal(const FolderRequest& request) {
    Panel panel(windowOnTop(), request);
    if (panel.exec() != QDialog::Accepted) return std::nullopt;
    return fromQt(panel.chosenFolder());
}

}  // namespace installer
