#include "qt/dressing/Dressing.h"

#include <QLabel>
#include <QLineEdit>
#include <QTextBrowser>
#include <QToolButton>
#include <QVariant>

#include "ports/window/DescriptionProperties.h"
#include "qt/dressing/BundlePicture.h"
#include "qt/dressing/DotLine.h"
#include "qt/dressing/FitsText.h"
#include "qt/dressing/FollowsFont.h"
#include "qt/dressing/MenuButton.h"
#include "qt/dressing/ReadingColumn.h"
#include "qt/dressing/SidePane.h"
#include "qt/values/QtText.h"

namespace installer {

namespace {

void dressOne(QWidget& control, const Bundle& bundle) {
    if (control.parentWidget() != nullptr) {
        if (control.property(textSizeProperty).isValid()) new FollowsFont(control);
        if (control.property(sidePaneProperty).toBool()) new SidePane(control);
    }
    if (control.property(connectsDotsProperty).toBool()) new DotLine(control);
    if (auto* label = qobject_cast<QLabel*>(&control)) {
        const QString picture = control.property(pictureNameProperty).toString();
        if (!picture.isEmpty()) new BundlePicture(*label, fromQt(picture), bundle);
    }
    if (auto* browser = qobject_cast<QTextBrowser*>(&control)) {
        if (control.property(readingColumnProperty).toBool()) new ReadingColumn(*browser);
        if (control.property(fitsTextProperty).toBool()) new FitsText(*browser);
    }
    if (auto* field = qobject_cast<QLineEdit*>(&control); field && !field->hasFrame()) {
        // The toolkit's own distance from a frame: without one, the text begins where its label
        // does.
        constexpr int innerMargin = 2;
        field->setTextMargins(-innerMargin, 0, -innerMargin, 0);
        // The toolkit goes by the text: a path would stand on the left below a label on the right.
        if (field->isRightToLeft()) {
            field->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
        }
    }
    if (auto* button = qobject_cast<QToolButton*>(&control)) {
        if (control.property(holdsMenuProperty).toBool()) new MenuButton(*button);
    }
}

}  // namespace

void dress(QWidget& root, const Bundle& bundle) {
    const QList<QWidget*> controls = root.findChildren<QWidget*>();
    dressOne(root, bundle);
    for (QWidget* control : controls) dressOne(*control, bundle);
}

}  // namespace installer
