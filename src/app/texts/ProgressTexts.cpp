#include "app/texts/ProgressTexts.h"

#include <cstddef>
#include <cstdint>

#include "app/texts/SizeText.h"
#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "install/run/InstallProgress.h"
#include "product/LocalizedText.h"

namespace installer {

namespace {

/// An item of that size takes long enough for people to wonder.
constexpr std::uint64_t largeItem = 20'000'000;
constexpr std::chrono::seconds minuteAndAHalf{90};

std::string timeLeftText(const Bundle& bundle, std::chrono::seconds left) {
    const bool isInMinutes = left > minuteAndAHalf;
    const auto number = isInMinutes ? left.count() / 60 : left.count();
    return formatted(
        localizedText(bundle, isInMinutes ? "time_left_minutes_fmt" : "time_left_seconds_fmt"),
        {std::to_string(number)});
}

}  // namespace

std::string progressNote(const Bundle& bundle, const ProgressReport& report) {
    std::string note;
    // A table without a text of these leaves it out.
    const auto add = [&note](const std::string& part) {
        if (part.empty()) return;
        if (!note.empty()) note += " · ";
        note += part;
    };
    if (report.item == 0) return note;
    add(formatted(localizedText(bundle, "progress_item_fmt"),
                  {std::to_string(report.item), std::to_string(report.items)}));
    if (report.itemTotal >= largeItem) {
        add(formatted(localizedText(bundle, "progress_bytes_fmt"),
                      {sizeText(bundle, report.itemBytes), sizeText(bundle, report.itemTotal)}));
    }
    if (report.timeLeft) add(timeLeftText(bundle, *report.timeLeft));
    return note;
}

std::string progressFile(const ProgressReport& report) {
    constexpr std::size_t mostCharacters = 50;
    // A name that is no text cannot be cut between its characters.
    if (!isUtf8(report.file) || !characters(report.file, mostCharacters + 1)) return report.file;
    return characters(report.file, 0, mostCharacters - 1).value_or("") + "…";
}

}  // namespace installer
