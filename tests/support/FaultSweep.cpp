#include "tests/support/FaultSweep.h"

#include <array>
#include <map>

namespace installer::test {

namespace {

using Effects = std::vector<AfterEffect>;

constexpr std::array errors = {std::errc::io_error, std::errc::no_space_on_device,
                               std::errc::permission_denied, std::errc::read_only_file_system,
                               std::errc::interrupted};

const Effects nothing = {AfterEffect::nothing};
const Effects partToo = {AfterEffect::nothing, AfterEffect::part};
const Effects everythingToo = {AfterEffect::nothing, AfterEffect::everything};
const Effects anything = {AfterEffect::nothing, AfterEffect::part, AfterEffect::everything};

struct FileOperation {
    bool givesAnError = true;
    Effects effects = nothing;
};

/// The calls that are no privileged commands.
const std::map<std::string, FileOperation> fileOperations = {
    {"exists", {.givesAnError = false}},
    {"isPackage", {.givesAnError = false}},
    {"bytesToCopy", {.givesAnError = false}},
    {"expectCopies", {.givesAnError = false}},
    {"walk", {.givesAnError = false, .effects = partToo}},
    {"list", {}},
    {"readTree", {.effects = partToo}},
    {"attributes", {}},
    {"read", {}},
    {"copy", {}},
    {"createFile", {}},
    {"openForWriting", {}},
    {"setSize", {}},
    {"remove", {.effects = everythingToo}},
    {"createFolders", {.effects = anything}},
    {"setAttributes", {.effects = anything}},
    {"write", {.effects = anything}},
};

std::vector<FaultPlan> faultsOfCommand(const std::string& tool, std::size_t place,
                                       Lasting lasting) {
    FaultPlan plan = {.place = place, .lasting = lasting};
    std::vector<FaultPlan> plans;
    for (const CommandFault fault :
         {CommandFault::denied, CommandFault::canceled, CommandFault::unusable}) {
        plan.command = fault;
        plans.push_back(plan);
    }
    for (const CommandFault fault : {CommandFault::exitStatus1, CommandFault::helperDies}) {
        plan.command = fault;
        for (const AfterEffect effect : tool == "/bin/mkdir" ? anything : everythingToo) {
            plan.afterEffect = effect;
            plans.push_back(plan);
        }
    }
    return plans;
}

std::string nameOf(AfterEffect effect) {
    if (effect == AfterEffect::nothing) return "";
    return effect == AfterEffect::part ? ", after a part of its work" : ", after all of its work";
}

std::string nameOf(Lasting lasting) {
    switch (lasting) {
        case Lasting::once:
            return "once";
        case Lasting::itsKind:
            return "and so does every later one of its kind";
        case Lasting::everything:
            return "and so does everything after it";
    }
    return "";
}

std::string nameOf(CommandFault fault) {
    switch (fault) {
        case CommandFault::denied:
            return "is denied";
        case CommandFault::canceled:
            return "is canceled";
        case CommandFault::unusable:
            return "cannot be launched";
        case CommandFault::exitStatus1:
            return "ends with status 1";
        case CommandFault::helperDies:
            return "loses its helper";
    }
    return "";
}

}  // namespace

std::vector<FaultPlan> faultsOf(const Faults::Call& call, std::size_t place, Lasting lasting) {
    if (call.front() == "create" || call.front() == "obtain") {
        return {{.place = place, .lasting = lasting}};
    }
    const auto operation = fileOperations.find(call.front());
    if (operation == fileOperations.end()) return faultsOfCommand(call.front(), place, lasting);
    std::vector<FaultPlan> plans;
    for (const AfterEffect effect : operation->second.effects) {
        for (const std::errc error : errors) {
            plans.push_back({place, lasting, effect, error});
            if (!operation->second.givesAnError) break;
        }
    }
    return plans;
}

std::string described(const FaultPlan& plan, const Faults::Call& call) {
    const bool isFileOperation = fileOperations.contains(call.front());
    const std::string how = isFileOperation ? "fails: " + std::make_error_code(plan.error).message()
                                            : nameOf(plan.command);
    return "call " + std::to_string(plan.place) + ", " + joined(call) + ", " + how +
           nameOf(plan.afterEffect) + ", " + nameOf(plan.lasting);
}

}  // namespace installer::test
