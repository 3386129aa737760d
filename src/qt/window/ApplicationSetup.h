#pragma once

#include <QApplication>
#include <QTranslator>
#include <optional>
#include <string>
#include <vector>

#include "qt/window/ToolkitMessages.h"

namespace installer {

class Bundle;
class SystemLog;

/// The toolkit's application object, set up for the product's bundle: its name, its icon, and the
/// language and reading direction of its texts, also for the toolkit's own texts. The application
/// ends with its last window. Make it once, and destroy it after all other objects of the toolkit.
class ApplicationSetup {
  public:
    /// `platform` is the toolkit's platform to ask for, or empty. A display must be usable.
    ApplicationSetup(const std::string& executablePath, const std::string& platform,
                     const Bundle& bundle, SystemLog& log);

    /// Runs until the last window has closed.
    void run();

  private:
    ToolkitMessages messages_;
    std::vector<std::string> arguments_;
    std::vector<char*> argumentPointers_;
    int argumentCount_ = 0;
    std::optional<QApplication> application_;
    QTranslator translator_;
};

/// The reading direction of a language such as "he" or "pt-BR".
[[nodiscard]] Qt::LayoutDirection readingDirection(const std::string& language);

}  // namespace installer
