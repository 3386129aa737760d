// Random plans and random requests, the same ones in every run, for the helper's tools in this
// process and for the real helper. Whatever is asked for, nothing changes but what the plan of the
// same round allows; that is worked out here once more, in the plainest way. The number of requests
// can be raised with INSTALLER_RANDOM_REQUESTS.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "privileged/helper/AdministratorTools.h"
#include "tests/privileged/helper/HelperProcess.h"
#include "tests/privileged/wall/ReadOnlyMachine.h"

namespace installer::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t userOfPlans = 65534;
constexpr std::size_t requestsPerPlan = 100;

using Requests = std::vector<ToolRequest>;

// The world: folders of an ordinary user, who has put links everywhere.

void addWorldFile(const std::string& path) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << path;
}

void giveToUser(const std::string& top) {
    std::vector<std::string> paths = {top};
    for (const auto& entry : fs::recursive_directory_iterator(top)) paths.push_back(entry.path());
    for (const std::string& path : paths) {
        if (::lchown(path.c_str(), userOfPlans, userOfPlans) != 0) std::abort();
    }
}

void makeWorld() {
    for (const auto& entry : fs::directory_iterator(playground)) fs::remove_all(entry.path());
    for (const char* folder : {"/a", "/a/b", "/c"}) {
        const std::string path = std::string(playground) + folder;
        for (const char* file : {"/file", "/deep/er/file", "/Old.plugin/x"}) {
            addWorldFile(path + file);
        }
        fs::create_symlink(canaryFolder, path + "/link");
        fs::create_symlink(std::string(playground) + "/c", path + "/deep/link");
        fs::create_symlink("..", path + "/up");
    }
    giveToUser(playground);
}

void makeCanary() {
    for (const char* file : {"/canary", "/inner/canary", "/a/file", "/Old.plugin/x"}) {
        addWorldFile(canaryFolder + std::string(file));
    }
    giveToUser(canaryFolder);
}

struct Seen {
    struct stat status{};
    std::string link;
};
using Snapshot = std::map<std::string, Seen>;

Snapshot snapshotOfEverything() {
    Snapshot snapshot;
    for (const char* top : {playground, canaryFolder}) {
        for (const auto& entry : fs::recursive_directory_iterator(top)) {
            Seen seen;
            if (::lstat(entry.path().c_str(), &seen.status) != 0) continue;
            if (entry.is_symlink()) seen.link = fs::read_symlink(entry.path());
            snapshot.emplace(entry.path(), seen);
        }
    }
    return snapshot;
}

bool sameTime(const timespec& one, const timespec& other) {
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

bool isSameEntry(const Seen& one, const Seen& other) {
    return one.status.st_ino == other.status.st_ino && one.status.st_mode == other.status.st_mode &&
           one.status.st_uid == other.status.st_uid && one.status.st_gid == other.status.st_gid &&
           one.link == other.link;
}

bool isUnchanged(const Seen& one, const Seen& other) {
    return isSameEntry(one, other) && one.status.st_size == other.status.st_size &&
           sameTime(one.status.st_mtim, other.status.st_mtim) &&
           sameTime(one.status.st_ctim, other.status.st_ctim);
}

// What the plan allows.

struct Plan {
    std::vector<std::string> folders;
    std::vector<std::string> destinations;
    std::vector<std::string> names;
};

bool isBelow(const std::string& path, const std::string& folder) {
    return path.starts_with(folder + "/");
}

bool isWithin(const std::string& path, const std::string& folder) {
    return path == folder || isBelow(path, folder);
}

bool isUsable(const Plan& plan, const std::string& destination) {
    const std::string closed = destination + "/";
    const auto holds = [&closed](const char* part) {
        return closed.find(part) != std::string::npos;
    };
    if (holds("//") || holds("/./") || holds("/../")) return false;
    return std::ranges::any_of(
        plan.folders, [&](const std::string& folder) { return isBelow(destination, folder); });
}

/// Nothing is removed for its name outside the folders, and only with all that lies in it.
bool wasRemovableByName(const Plan& plan, const std::string& path) {
    for (fs::path part = path; part.has_relative_path(); part = part.parent_path()) {
        const bool isNamed =
            std::ranges::find(plan.names, part.filename().string()) != plan.names.end();
        if (isNamed && isUsable(plan, part.string())) return true;
    }
    return false;
}

/// `before` and `after` are null where there was, or is, nothing.
bool mayChange(const Plan& plan, const std::string& path, const Seen* before, const Seen* after) {
    bool leadsToOne = false;
    for (const std::string& destination : plan.destinations) {
        if (!isUsable(plan, destination)) continue;
        if (isWithin(path, destination)) return true;
        leadsToOne = leadsToOne || isBelow(destination, path);
    }
    if (after == nullptr) return wasRemovableByName(plan, path);
    if (!S_ISDIR(after->status.st_mode)) return false;
    if (before == nullptr) return leadsToOne;
    // What is made or removed in a folder changes its times and nothing else of it.
    const bool mayHoldNamed =
        !plan.names.empty() && std::ranges::any_of(plan.folders, [&](const std::string& folder) {
            return isWithin(path, folder);
        });
    return (leadsToOne || mayHoldNamed) && isSameEntry(*before, *after);
}

/// The first path that has changed though it may not; empty if there is none.
std::string forbiddenChange(const Plan& plan, const Snapshot& before, const Snapshot& after) {
    for (const auto& [path, seen] : before) {
        const auto now = after.find(path);
        const Seen* next = now == after.end() ? nullptr : &now->second;
        if (next != nullptr && isUnchanged(seen, *next)) continue;
        if (!mayChange(plan, path, &seen, next)) return path;
    }
    for (const auto& [path, seen] : after) {
        if (!before.contains(path) && !mayChange(plan, path, nullptr, &seen)) return path;
    }
    return "";
}

class PlanMaker {
  public:
    explicit PlanMaker(unsigned seed) : random_(seed) {}

    Plan plan() {
        Plan plan;
        for (std::size_t count = 1 + below(3); count > 0; --count) plan.folders.push_back(place());
        for (std::size_t count = 2 + below(6); count > 0; --count) {
            plan.destinations.push_back(below(4) == 0 ? anyPath() : place() + name());
        }
        if (below(3) == 0) plan.names.emplace_back("Old.plugin");
        return plan;
    }

    Requests requests(const Plan& plan) {
        Requests requests;
        while (requests.size() < requestsPerPlan) requests.push_back(request(plan));
        return requests;
    }

  private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    std::string chosen(const std::vector<std::string>& texts) { return texts[below(texts.size())]; }

    /// A folder, or what might be one.
    std::string place() {
        return chosen({"/media/a", "/media/a/b", "/media/c", "/media/a/deep", "/media/new",
                       "/media/a/link", "/media/a/deep/link", "/media/c/up", "/media"});
    }

    std::string name() {
        return chosen({"/file", "/deep", "/deep/er/file", "/new", "/new/er", "/Old.plugin", "/link",
                       "/link/a", "/deep/link/file", "/up/c", "/canary"});
    }

    std::string anyPath() {
        const std::string path = place() + name();
        return chosen({path, place(), "/mnt/canary", "/mnt/a/file", "/mnt", path + "/../../c/file",
                       path + "//x", path + "/.", "/", "", path + "/", "/mnt/Old.plugin",
                       "/media/c/Old.plugin"});
    }

    std::string path(const Plan& plan) {
        if (plan.destinations.empty() || below(3) == 0) return anyPath();
        const std::string destination = chosen(plan.destinations);
        return chosen({destination, destination + "/x", destination + name(), destination + "x",
                       fs::path(destination).parent_path(), destination + "/../file"});
    }

    ToolRequest request(const Plan& plan) {
        const std::string path = this->path(plan);
        switch (below(9)) {
            case 0:
                return {"/bin/mkdir", {"-m775", "-p", path}};
            case 1:
                return {"/usr/sbin/chown", {"-R", "nobody:admin", path}};
            case 2:
                return {"/bin/rm", {"-fR", path}};
            case 3:
                return {"/bin/cp", {"-R", this->path(plan), path}};
            case 4:
                return {"/bin/cp", {"-R", "/media/c/deep", path}};
            case 5:
                return {"/bin/chmod", {"-R", below(2) == 0 ? "0775" : "0664", path}};
            case 6:
                return {"/usr/sbin/chmod", {"-R", "0644", path}};
            case 7:
                return {"/usr/bin/touch", {path}};
            default:
                return {"/usr/bin/xattr", {"-dr", "com.apple.quarantine", path}};
        }
    }

    std::minstd_rand random_;
};

// Who is asked.

struct Tally {
    std::size_t done = 0;
    std::size_t refused = 0;
};

void count(Tally& tally, std::uint32_t status) {
    if (status == 0) ++tally.done;
    if (status == 126) ++tally.refused;
}

WriteGrant foldersOf(const Plan& plan) {
    WriteGrant grant;
    for (const std::string& folder : plan.folders) grant.addFolder(folder);
    return grant;
}

/// Without the kernel's wall, which would hide a request that is allowed by mistake.
void askInThisProcess(const Plan& plan, const Requests& requests, Tally& tally) {
    AdministratorTools tools(InvokingUser(userOfPlans), ProtectedFolders(), foldersOf(plan));
    tools.addPlanned({PlanTexts::Kind::destinations, plan.destinations});
    tools.addPlanned({PlanTexts::Kind::removableNames, plan.names});
    for (const ToolRequest& request : requests) {
        count(tally, static_cast<std::uint32_t>(tools.run(request, {})));
    }
}

void askHelper(const Plan& plan, const Requests& requests, Tally& tally) {
    HelperProcess helper({.environment = {"PKEXEC_UID=65534"},
                          .arguments = {"--started-by", "polkit"},
                          .before = {},
                          .grant = foldersOf(plan)});
    if (!helper.saysHello()) return;
    static_cast<void>(
        helper.sendBytes(encodedPlan({PlanTexts::Kind::destinations, plan.destinations}) +
                         encodedPlan({PlanTexts::Kind::removableNames, plan.names})));
    for (const ToolRequest& request : requests) {
        count(tally, helper.run(request.tool, request.arguments).value_or(99));
    }
}

std::string askForPlans(std::size_t requests, void (*ask)(const Plan&, const Requests&, Tally&)) {
    ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    makeCanary();
    Tally tally;
    const std::size_t plans = std::max<std::size_t>(requests / requestsPerPlan, 10);
    for (unsigned seed = 1; seed <= plans; ++seed) {
        makeWorld();
        PlanMaker maker(seed);
        const Plan plan = maker.plan();
        const Snapshot before = snapshotOfEverything();
        ask(plan, maker.requests(plan), tally);
        const std::string path = forbiddenChange(plan, before, snapshotOfEverything());
        if (!path.empty()) return "plan " + std::to_string(seed) + " changed " + path;
    }
    // Else nothing was proved.
    const bool isTelling = tally.done > plans && tally.refused > plans;
    return isTelling ? ""
                     : std::to_string(tally.done) + " done, " + std::to_string(tally.refused) +
                           " refused";
}

std::size_t wantedRequests() {
    const char* text = std::getenv("INSTALLER_RANDOM_REQUESTS");
    return text == nullptr ? 10'000 : std::stoul(text);
}

class RandomPlans : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) GTEST_SKIP() << "NOT TESTED: the helper's tests must run as root";
    }
};

TEST_F(RandomPlans, LetNothingElseChange) {
    EXPECT_EQ(onReadOnlyMachine([] { return askForPlans(wantedRequests(), askInThisProcess); }),
              "");
}

TEST_F(RandomPlans, LetNothingElseChangeThroughTheRealHelper) {
    EXPECT_EQ(onReadOnlyMachine([] { return askForPlans(wantedRequests() / 10, askHelper); }), "");
}

}  // namespace
}  // namespace installer::test
