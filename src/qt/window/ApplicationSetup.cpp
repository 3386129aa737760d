#include "qt/window/ApplicationSetup.h"

#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QPixmap>
#include <clocale>

#include "foundation/values/Paths.h"
#include "ports/Bundle.h"
#include "qt/theme/WindowStyle.h"
#include "qt/values/Picture.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

std::vector<std::string> commandLine(const std::string& executablePath,
                                     const std::string& platform) {
    if (platform.empty()) return {executablePath};
    return {executablePath, "-platform", platform};
}

void setIcon(const Bundle& bundle) {
    for (const char* type : {"svg", "png"}) {
        if (const auto path = bundle.resourcePath("AppIcon", type)) {
            // An icon without a size of its own is drawn in each size that is asked for.
            const QImage picture = path->ends_with("png") ? readPicture(*path) : QImage();
            QApplication::setWindowIcon(picture.isNull() ? QIcon(toQt(*path))
                                                         : QIcon(QPixmap::fromImage(picture)));
            return;
        }
    }
}

}  // namespace

Qt::LayoutDirection readingDirection(const std::string& language) {
    return QLocale(toQt(language)).textDirection();
}

ApplicationSetup::ApplicationSetup(const std::string& executablePath, const std::string& platform,
                                   const Bundle& bundle, SystemLog& log)
    : messages_(log), arguments_(commandLine(executablePath, platform)) {
    for (std::string& argument : arguments_) argumentPointers_.push_back(argument.data());
    argumentCount_ = static_cast<int>(argumentPointers_.size());
    argumentPointers_.push_back(nullptr);
    application_.emplace(argumentCount_, argumentPointers_.data());
    // The toolkit takes over the user's way to write numbers, which files must not follow.
    std::setlocale(LC_NUMERIC, "C");
    WindowStyle::replaceToolkitsOwn();

    const std::string program = lastPathComponent(executablePath);
    QApplication::setApplicationName(
        toQt(bundle.informationValue("CFBundleName").value_or(program)));
    QGuiApplication::setDesktopFileName(
        toQt(bundle.informationValue("CFBundleIdentifier").value_or(program)));
    QApplication::setQuitOnLastWindowClosed(true);
    setIcon(bundle);

    const QLocale language(toQt(bundle.localization()));
    if (translator_.load(language, QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&translator_);
    QApplication::setLayoutDirection(readingDirection(bundle.localization()));
}

void ApplicationSetup::run() {
    QApplication::exec();
}

}  // namespace installer
