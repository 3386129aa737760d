#include "qt/window/QtInterfaceLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QUiLoader>
#include <utility>

#include "qt/binding/Binder.h"
#include "qt/controls/Announcement.h"
#include "qt/controls/TickableRows.h"
#include "qt/controls/WindowManners.h"
#include "qt/dialogs/TextOutput.h"
#include "qt/dressing/Dressing.h"
#include "qt/dressing/FocusRing.h"
#include "qt/dressing/MenuButton.h"
#include "qt/dressing/Mnemonics.h"
#include "qt/values/QtText.h"
#include "qt/window/QtInterface.h"

namespace installer {

namespace {

/// Records unknown classes, which the toolkit would leave out of the window without an error.
class DescriptionReader final : public QUiLoader {
  public:
    DescriptionReader() {
        clearPluginPaths();
        setLanguageChangeEnabled(false);
        setTranslationEnabled(false);
    }

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override {
        QWidget* widget = QUiLoader::createWidget(className, parent, name);
        if (!widget && unknownClass_.isEmpty()) unknownClass_ = className;
        return widget;
    }

    [[nodiscard]] QString unknownClass() const { return unknownClass_; }

  private:
    QString unknownClass_;
};

/// A description is made of the toolkit's own controls. The reader would load all plug-ins of the
/// toolkit's designer when it is made, and with them a dozen libraries.
std::unique_ptr<DescriptionReader> readerWithoutPlugIns() {
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    auto reader = std::make_unique<DescriptionReader>();
    QCoreApplication::setLibraryPaths(paths);
    return reader;
}

}  // namespace

QtInterfaceLoader::QtInterfaceLoader(const Bundle& bundle, SystemLog& log, OpenLink openLink)
    : bundle_(bundle), log_(log), openLink_(std::move(openLink)) {
    MenuButton::tellScreenReaders();
    TickableRows::tellScreenReaders();
    Announcement::tellScreenReaders();
}

std::unique_ptr<Interface> QtInterfaceLoader::refuse(const std::string& name,
                                                     const std::string& reason) {
    log_.log("The window's description \"" + name + "\" cannot be used: " + reason);
    return nullptr;
}

std::unique_ptr<Interface> QtInterfaceLoader::load(const std::string& name, InterfaceOwner& owner) {
    const auto path = bundle_.resourcePath(name, "ui");
    if (!path) return refuse(name, "the bundle has none.");
    QFile file(toQt(*path));
    if (!file.open(QIODevice::ReadOnly)) return refuse(name, fromQt(file.errorString()));

    const auto reader = readerWithoutPlugIns();
    // Pictures that a description names itself lie beside it.
    reader->setWorkingDirectory(QFileInfo(file).absoluteDir());
    std::unique_ptr<QWidget> root(reader->load(&file));
    if (!reader->unknownClass().isEmpty()) {
        return refuse(name, "unknown class " + fromQt(reader->unknownClass()) + ".");
    }
    if (!root) return refuse(name, fromQt(reader->errorString()));

    if (auto* window = qobject_cast<QMainWindow*>(root.get())) {
        new WindowManners(*window);
        new FocusRing(*window);
        new Mnemonics(*window);
    } else {
        root->adjustSize();
    }
    auto binder = std::make_unique<Binder>(*root, owner, bundle_, log_, openLink_);
    dress(*root, bundle_);
    connectTextOutput(*root, bundle_);
    return std::make_unique<QtInterface>(std::move(root), std::move(binder));
}

}  // namespace installer
