#include <nlohmann/json.hpp>

#include "tools/installerctl/output/Report.h"

namespace installer {

namespace {

using Json = nlohmann::ordered_json;

constexpr int reportSchema = 1;

Json notes(const std::vector<PathNote>& list) {
    Json json = Json::array();
    for (const PathNote& note : list) {
        json.push_back({{"path", note.path}, {"reason", note.reason}});
    }
    return json;
}

Json hostsJson(const Report& report) {
    Json json = Json::array();
    for (const ReportedHost& host : report.hosts) {
        json.push_back({{"name", host.name},
                        {"user", host.user},
                        {"application", host.application},
                        {"plugIns", host.plugIns},
                        {"refused", host.refused.empty() ? Json() : Json(host.refused)}});
    }
    return json;
}

Json itemsJson(const Report& report) {
    Json json = Json::array();
    for (const ReportedItem& item : report.items) {
        json.push_back({{"source", item.source},
                        {"destination", item.destination},
                        {"rule", item.rule},
                        {"host", item.host},
                        {"user", item.user},
                        {"action", item.action},
                        {"result", item.result},
                        {"differences", notes(item.differences)},
                        {"lost", item.lost}});
    }
    return json;
}

Json spaceJson(const Report& report) {
    Json json = Json::array();
    for (const ReportedSpace& space : report.space) {
        json.push_back(
            {{"folder", space.folder}, {"needed", space.needed}, {"available", space.available}});
    }
    return json;
}

}  // namespace

std::string jsonOf(const Report& report, int exitStatus) {
    const Json json = {{"schema", reportSchema},
                       {"command", report.command},
                       {"identifier", report.identifier},
                       {"product", report.product},
                       {"version", report.version},
                       {"changed", report.changed},
                       {"exitStatus", exitStatus},
                       {"summary", report.summary},
                       {"installedVersion", report.installedVersion},
                       {"since", report.since},
                       {"basis", report.basis},
                       {"receipt", report.receipt},
                       {"users", report.users},
                       {"hosts", hostsJson(report)},
                       {"items", itemsJson(report)},
                       {"leftOut", notes(report.leftOut)},
                       {"space", spaceJson(report)},
                       {"kept", notes(report.kept)},
                       {"removed", report.removed},
                       {"failed", notes(report.failed)}};
    // A name that is not UTF-8 must not end the program.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace installer
