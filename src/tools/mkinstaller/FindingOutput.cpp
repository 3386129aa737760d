#include "tools/mkinstaller/FindingOutput.h"

#include <string_view>

#include <nlohmann/json.hpp>

#include "foundation/values/VisibleText.h"

namespace installer {

namespace {

constexpr std::string_view bold = "\033[1m";
constexpr std::string_view red = "\033[1;31m";
constexpr std::string_view magenta = "\033[1;35m";
constexpr std::string_view plain = "\033[0m";

std::string_view nameOf(Severity severity) {
    return severity == Severity::error ? "error" : "warning";
}

std::string colored(std::string_view text, std::string_view color, Colors colors) {
    if (colors == Colors::none) return std::string(text);
    return std::string(color) + std::string(text) + std::string(plain);
}

}  // namespace

std::string lineOf(const Finding& finding, Strictness strictness, Colors colors) {
    const Severity severity = severityOf(finding, strictness);
    const std::string place =
        visibleText(finding.place.file) + ":" + std::to_string(finding.place.line) + ":";
    return colored(place, bold, colors) + " " +
           colored(nameOf(severity), severity == Severity::error ? red : magenta, colors) + " " +
           std::string(finding.kind->code) + ": " + visibleText(finding.problem) + "; " +
           visibleText(finding.repair);
}

std::string jsonOf(const std::string& product, const std::vector<Finding>& findings,
                   Strictness strictness) {
    auto list = nlohmann::ordered_json::array();
    std::size_t errors = 0;
    for (const Finding& finding : findings) {
        const Severity severity = severityOf(finding, strictness);
        errors += severity == Severity::error ? 1 : 0;
        list.push_back({{"file", finding.place.file},
                        {"line", finding.place.line},
                        {"severity", nameOf(severity)},
                        {"code", finding.kind->code},
                        {"title", finding.kind->title},
                        {"problem", finding.problem},
                        {"repair", finding.repair}});
    }
    const nlohmann::ordered_json whole = {{"product", product},
                                          {"errors", errors},
                                          {"warnings", findings.size() - errors},
                                          {"findings", std::move(list)}};
    // A name that is not UTF-8 must not end the program.
    return whole.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace installer
