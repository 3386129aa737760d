#pragma once

#include <cstdint>
#include <string>

namespace installer {

/// The desktop's list of applications.
class ApplicationDatabase {
  public:
    virtual ~ApplicationDatabase() = default;

    /// Makes the application at the path known, or known anew when it was before. 0 on success,
    /// else a status that means something to the platform. An item that is no application that
    /// could be started there is left alone, with success.
    [[nodiscard]] virtual std::int32_t registerApplication(const std::string& path) = 0;
};

}  // namespace installer
