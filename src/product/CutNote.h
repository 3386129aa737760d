#pragma once

#include <string>

#include "foundation/text/StyledText.h"

namespace installer {

class Bundle;

/// If the text was cut because it is too long to be shown, adds a last paragraph that says so and
/// names the file that has all of it.
void addCutNote(StyledText& text, const Bundle& bundle, const std::string& file);

}  // namespace installer
