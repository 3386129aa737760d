#include "qt/dressing/BundlePicture.h"

#include <QEvent>
#include <QLabel>
#include <QPixmap>
#include <utility>

#include "ports/Bundle.h"
#include "qt/theme/ColorScheme.h"
#include "qt/values/Picture.h"

namespace installer {

namespace {

std::string pathOfPicture(const Bundle& bundle, const std::string& name, bool dark) {
    if (dark) {
        if (const auto path = bundle.resourcePath(name + "-Dark", "png")) return *path;
    }
    return bundle.resourcePath(name, "png").value_or("");
}

}  // namespace

BundlePicture::BundlePicture(QLabel& label, std::string name, const Bundle& bundle)
    : QObject(&label), label_(label), name_(std::move(name)), bundle_(bundle) {
    label.installEventFilter(this);
    show();
}

bool BundlePicture::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::PaletteChange) show();
    return false;
}

void BundlePicture::show() {
    const std::string path = pathOfPicture(bundle_, name_, isDark(label_.palette()));
    if (path == shown_ && !path.empty()) return;
    shown_ = path;
    showPicture(label_, {path});
    label_.setHidden(label_.pixmap(Qt::ReturnByValue).isNull());
}

}  // namespace installer
