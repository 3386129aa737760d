#pragma once

class QWidget;

namespace installer {

class Bundle;

/// Gives the controls of a description the looks that their properties ask for: the size of a text
/// (`textSize`), a picture of the bundle (`pictureName`), the ground of the pane at the side
/// (`sidePane`), the line between the steps' dots (`connectsDots`), the menu behind a button
/// (`holdsMenu`), the column of a long text (`readingColumn`), the height of a short one
/// (`fitsText`). The bundle outlives the controls.
void dress(QWidget& root, const Bundle& bundle);

}  // namespace installer
