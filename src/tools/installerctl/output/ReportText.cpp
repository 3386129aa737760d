#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "foundation/values/VisibleText.h"
#include "tools/installerctl/output/Report.h"

namespace installer {

namespace {

constexpr std::string_view bold = "\033[1m";
constexpr std::string_view plain = "\033[0m";

/// The colour of an action or a result: green for what is well, yellow for what changes, red for
/// what is not as it must be.
std::string_view colorOf(std::string_view word) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 13> colors = {{
        {"ok", "\033[32m"},
        {"same", "\033[32m"},
        {"installed", "\033[32m"},
        {"removed", "\033[32m"},
        {"new", "\033[33m"},
        {"replace", "\033[33m"},
        {"remove", "\033[33m"},
        {"extra", "\033[33m"},
        {"kept", "\033[33m"},
        {"changed", "\033[31m"},
        {"missing", "\033[31m"},
        {"failed", "\033[31m"},
        {"refused", "\033[31m"},
    }};
    const auto found = std::ranges::find(colors, word, &decltype(colors)::value_type::first);
    return found == colors.end() ? std::string_view() : found->second;
}

class Page {
  public:
    Page(bool onTerminal, bool colored) : onTerminal_(onTerminal), colored_(colored) {}

    void heading(std::string_view text) {
        text_ += '\n' +
                 (colored_ ? std::string(bold) + std::string(text) + std::string(plain)
                           : std::string(text)) +
                 '\n';
    }

    /// A word and what it is about, in columns on a terminal, else with a tab between them.
    void row(std::string_view word, const std::string& about) {
        constexpr std::size_t width = 9;
        const std::string_view color = colored_ ? colorOf(word) : std::string_view();
        std::string cell = std::string(word);
        std::string gap = "\t";
        if (onTerminal_) gap = std::string(word.size() < width ? width - word.size() : 1, ' ');
        if (!color.empty()) cell = std::string(color) + cell + std::string(plain);
        text_ += (onTerminal_ ? "  " : "") + cell + gap + visibleText(about) + '\n';
    }

    void line(const std::string& text) { text_ += visibleText(text) + '\n'; }

    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    bool onTerminal_;
    bool colored_;
    std::string text_;
};

std::string bytesText(std::uint64_t bytes) {
    constexpr std::array<std::string_view, 5> units = {"bytes", "kB", "MB", "GB", "TB"};
    std::uint64_t tenths = bytes * 10;
    std::size_t unit = 0;
    while (tenths >= 10000 && unit + 1 < units.size()) {
        tenths /= 1000;
        ++unit;
    }
    std::string number = std::to_string(tenths / 10);
    if (unit > 0) number += "." + std::to_string(tenths % 10);
    return number + " " + std::string(units.at(unit));
}

void addHosts(Page& page, const Report& report) {
    if (report.hosts.empty()) return;
    page.heading("Hosts");
    for (const ReportedHost& host : report.hosts) {
        const std::string who = host.name + " of " + host.user;
        if (host.refused.empty()) {
            page.row("found", who + ": " + host.application);
        } else {
            page.row("refused", who + ": " + host.refused);
        }
    }
}

void addItems(Page& page, const Report& report) {
    if (report.items.empty()) return;
    page.heading("Items");
    for (const ReportedItem& item : report.items) {
        const std::string& word = item.result.empty() ? item.action : item.result;
        const std::string from = item.source.empty() ? "" : "  from " + item.source;
        page.row(word, item.destination + from);
        for (const PathNote& difference : item.differences) {
            page.row("", difference.reason + ": " + difference.path);
        }
        for (const std::string& path : item.lost) page.row("", "somebody's own, lost: " + path);
    }
}

void addNotes(Page& page, std::string_view heading, std::string_view word,
              const std::vector<PathNote>& notes) {
    if (notes.empty()) return;
    page.heading(heading);
    for (const PathNote& note : notes) page.row(word, note.path + ": " + note.reason);
}

void addState(Page& page, const Report& report) {
    if (!report.installedVersion.empty()) {
        page.line("Installed: version " + report.installedVersion + ", since " + report.since);
    }
    if (report.users.empty()) return;
    std::string users;
    for (const std::string& user : report.users) users += (users.empty() ? "" : ", ") + user;
    page.line("Users: " + users);
}

}  // namespace

std::string textOf(const Report& report, bool onTerminal, bool colored) {
    Page page(onTerminal, colored);
    page.line(report.product + " " + report.version);
    addState(page, report);
    addHosts(page, report);
    addItems(page, report);
    addNotes(page, "Left out of the payload", "left out", report.leftOut);
    addNotes(page, "Kept", "kept", report.kept);
    addNotes(page, "Failed", "failed", report.failed);
    if (!report.space.empty()) page.heading("Space");
    for (const ReportedSpace& space : report.space) {
        page.row("", bytesText(space.needed) + " needed, " + bytesText(space.available) +
                         " free: " + space.folder);
    }
    page.heading(visibleText(report.summary));
    return page.text();
}

}  // namespace installer
