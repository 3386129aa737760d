#include "app/texts/NeededSpace.h"

#include <algorithm>
#include <set>
#include <utility>

#include "app/texts/SizeText.h"
#include "foundation/text/Format.h"
#include "ports/FileManager.h"
#include "ports/Platform.h"
#include "product/LocalizedText.h"

namespace installer {

Space NeededSpace::of(const std::vector<HostModel>& selected, const std::vector<HostModel>& all) {
    const InstallPlan& plan = planFor(all);
    Space space;
    std::set<std::string> folders;
    for (const PlannedItem& item : plan.items) {
        const bool isWanted =
            !item.host || std::ranges::find(selected, plan.hosts[*item.host]) != selected.end();
        if (!isWanted) continue;
        space.needed += item.bytes;
        folders.insert(item.destinationFolder());
    }
    for (const std::string& folder : folders) {
        const auto free = platform_.files.freeBytes(folder);
        if (!free) return {.needed = space.needed};
        space.free = std::min(*free, space.free.value_or(*free));
    }
    return space;
}

const InstallPlan& NeededSpace::planFor(const std::vector<HostModel>& all) {
    PlannedFor wanted{.hosts = all, .folders = {}};
    for (const HostModel& host : all) wanted.folders.push_back(host.plugInPath());
    if (plan_ && wanted == plannedFor_) return *plan_;
    plannedFor_ = std::move(wanted);
    return plan_.emplace(makeInstallPlan(platform_, all));
}

std::string spaceText(const Bundle& bundle, const Space& space) {
    if (!space.free) return "";
    const char* format = space.needed > *space.free ? "space_short_fmt" : "space_fmt";
    return formatted(localizedText(bundle, format),
                     {sizeText(bundle, space.needed), sizeText(bundle, *space.free)});
}

}  // namespace installer
