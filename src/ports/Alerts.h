#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace installer {

/// A question or a message that the user must answer before anything else happens.
struct Alert {
    enum class Style { informational, warning };

    std::string identifier;  ///< names the question for tests and for recorded answers
    Style style = Style::warning;
    std::string title;
    std::string message;
    std::vector<std::string> buttons;  ///< titles; the first one is the default
    std::size_t number = 0;            ///< among equal messages that follow one another; 0 for none
    std::size_t item = 0;   ///< the number of the item that it is about, from 1; 0 if not known
    std::size_t items = 0;  ///< and of how many
};

/// Shows alerts, one at a time.
class Alerts {
  public:
    virtual ~Alerts() = default;

    /// Shows the alert, waits for the answer and gives the pressed button's place in `buttons`.
    /// If the user cannot be asked, the texts are written to standard error and to the system log,
    /// and the answer is the first button.
    [[nodiscard]] virtual std::size_t runModal(const Alert& alert) = 0;
};

}  // namespace installer
