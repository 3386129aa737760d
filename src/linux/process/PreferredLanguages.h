#pragma once

#include <string>
#include <vector>

#include "linux/process/Environment.h"

namespace installer {

/// The languages that the user asks for, the first one first, as "de_AT" or "de": those of
/// LANGUAGE, then of LC_ALL, LC_MESSAGES and LANG, without encoding and modifier. The locales "C"
/// and "POSIX" are no language; in one of the last three they hide the variables after it, as
/// `LC_ALL=C` is meant to do.
[[nodiscard]] std::vector<std::string> preferredLanguages(const Environment& environment);

/// The language of `available` (names such as "de", "pt-BR") that suits best: for each of the
/// preferred ones in turn the one with its region, then the language alone; else English; else the
/// first by name. Letter case does not count, and "_" and "-" are the same. Empty when nothing is
/// available.
[[nodiscard]] std::string chosenLanguage(const std::vector<std::string>& preferred,
                                         std::vector<std::string> available);

/// What stands in where the chosen language lacks something.
inline constexpr const char* fallbackLanguage = "en";

}  // namespace installer
