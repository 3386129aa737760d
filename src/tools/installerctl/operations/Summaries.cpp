#include "tools/installerctl/operations/Summaries.h"

#include <algorithm>
#include <string_view>

#include "tools/installerctl/machine/Notes.h"
#include "tools/installerctl/operations/RunPlan.h"

namespace installer {

namespace {

std::string countOf(const Report& report, std::string_view action) {
    return std::to_string(std::ranges::count(report.items, action, &ReportedItem::action));
}

}  // namespace

ReportedItem reportedItem(const Receipt::Item& item) {
    ReportedItem reported;
    reported.source = item.source;
    reported.destination = item.destination;
    reported.rule = item.rule;
    reported.host = item.host;
    reported.user = item.user;
    return reported;
}

void addPlan(Report& report, const RunPlan& plan, bool hasReceipt) {
    report.hosts = plan.hosts;
    report.items = plan.items;
    report.leftOut = plan.leftOut;
    report.failed = plan.refused;
    report.space = plan.space;
    report.receipt = !hasReceipt ? "new" : plan.receiptDiffers ? "replace" : "same";
}

std::string planSummary(const Report& report) {
    std::string summary = countOf(report, "new") + " new, " + countOf(report, "replace") +
                          " replaced, " + countOf(report, "same") + " the same";
    const std::string removed = countOf(report, "remove");
    if (removed != "0") summary += ", " + removed + " removed";
    if (!report.failed.empty()) {
        summary += ", " + std::to_string(report.failed.size()) + " refused";
    }
    if (report.receipt == "new") summary += "; there is no receipt yet";
    return summary;
}

ExitStatus withoutPayload(Report& report) {
    report.summary = "The bundle has no payload";
    tellPeople(report.summary);
    return ExitStatus::bundleUnusable;
}

}  // namespace installer
