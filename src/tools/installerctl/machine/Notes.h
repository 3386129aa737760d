#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ports/Alerts.h"
#include "ports/SystemLog.h"

namespace installer {

/// Keeps what the core says while it works: most of it is about every single file, and matters only
/// where something fails.
class Notes final : public SystemLog {
  public:
    void log(std::string_view line) override { lines_.emplace_back(line); }

    /// The last line that names the path and is not about its beginning; empty without one.
    [[nodiscard]] std::string lastAbout(const std::string& path) const;

  private:
    std::vector<std::string> lines_;
};

/// Alerts for which nobody is there: what they say is in the verb's own report.
class UnseenAlerts final : public Alerts {
  public:
    [[nodiscard]] std::size_t runModal(const Alert& /*alert*/) override { return 0; }
};

/// One line for people, on standard error.
void tellPeople(std::string_view line);

}  // namespace installer
