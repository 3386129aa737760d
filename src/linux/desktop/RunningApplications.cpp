#include "linux/desktop/RunningApplications.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <set>
#include <string_view>
#include <utility>

#include <poll.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include "foundation/values/Paths.h"
#include "linux/bundle/PackageLayout.h"
#include "linux/desktop/ApplicationIcon.h"
#include "linux/desktop/ApplicationName.h"
#include "linux/desktop/MenuIcon.h"
#include "linux/desktop/ProcessFacts.h"
#include "ports/DescriptorWatcher.h"
#include "privileged/system/Accounts.h"

namespace installer {

namespace {

/// Makes room for a descriptor of each process of a busy desktop. Gives the first descriptor that
/// is no longer to be used for that.
int raisedDescriptorLimit() {
    constexpr rlim_t plenty = 4096;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return 0;
    if (limit.rlim_cur < plenty) {
        const rlimit raised{std::min(plenty, limit.rlim_max), limit.rlim_max};
        if (::setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
    }
    return static_cast<int>(std::min(limit.rlim_cur, plenty) / 4 * 3);
}

/// The user of this process, and behind a root that somebody has become, that somebody.
std::set<uid_t> peopleOfThisSession() {
    std::set<uid_t> people = {::getuid()};
    if (::getuid() != 0) return people;
    for (const char* variable : {"SUDO_UID", "PKEXEC_UID"}) {
        const char* text = std::getenv(variable);
        const std::string_view value = text == nullptr ? "" : text;
        uid_t user = 0;
        const auto end = std::from_chars(value.data(), value.data() + value.size(), user);
        if (end.ec == std::errc() && end.ptr == value.data() + value.size()) people.insert(user);
    }
    return people;
}

/// Empty for a program of the person's own.
std::string ownerOf(const ProcessFacts& facts) {
    // Root's number is the smallest: behind it is who has become root.
    const uid_t person = *peopleOfThisSession().rbegin();
    if (!facts.user || *facts.user == person) return "";
    const auto account = userNumbered(*facts.user);
    return account ? account.value().name : std::to_string(*facts.user);
}

/// The icon of the package that the program or the script lies in; no picture without one.
Image iconOfPackage(const ProcessFacts& facts, Bundles& bundles) {
    std::vector<std::string> paths = {facts.executable};
    paths.insert(paths.end(), facts.arguments.begin(), facts.arguments.end());
    for (const std::string& path : paths) {
        const auto package = path.starts_with('/') ? packageOfProgram(path) : std::nullopt;
        if (!package) continue;
        if (Image icon = applicationIcon(*package, bundles); !icon.path.empty()) return icon;
    }
    return {};
}

bool hasEnded(const FileDescriptor& process) {
    pollfd polled{process.get(), POLLIN, 0};
    return ::poll(&polled, 1, 0) > 0;
}

}  // namespace

RunningApplications::RunningApplications(DescriptorWatcher& watcher, Bundles& bundles,
                                         Environment environment)
    : watcher_(watcher),
      bundles_(bundles),
      environment_(std::move(environment)),
      descriptorLimit_(raisedDescriptorLimit()),
      timer_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {
    if (const auto facts = processFacts(::getpid())) {
        ownPackage_ = packageOfProgram(facts->executable);
    }
}

std::vector<std::string> RunningApplications::scan() {
    if (!isTelling_) return scanned();
    if (!scanWhileTelling_) scanWhileTelling_ = scanned();
    return *scanWhileTelling_;
}

std::vector<std::string> RunningApplications::scanned() {
    // An end that was not told yet still is, as the event loop turns on.
    std::erase_if(watched_, [](const auto& entry) { return !hasEnded(entry.second.process); });
    const std::set<uid_t> people = peopleOfThisSession();
    std::vector<std::string> names;
    listed_.clear();
    for (const pid_t number : listedProcesses()) {
        if (number == ::getpid()) continue;
        // Opened before its facts are read, the descriptor shows whether they are still those of
        // the same process.
        FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, number, 0)));
        if (!process && errno == ESRCH) continue;
        const auto facts = processFacts(number);
        if (!facts || isOwn(*facts) || (process && hasEnded(process))) continue;
        if (facts->user && !people.contains(*facts->user)) continue;
        std::string name = applicationName(*facts, bundles_);
        if (name.empty()) continue;
        if (process && process.get() < descriptorLimit_) watch(std::move(process), name);
        listed_.emplace_back(number, name);
        names.push_back(std::move(name));
    }
    return names;
}

ApplicationFace RunningApplications::faceOf(const std::string& name) {
    for (const auto& [process, itsName] : listed_) {
        if (itsName != name) continue;
        const auto facts = processFacts(process);
        // Another process may have its number by now.
        if (!facts || applicationName(*facts, bundles_) != name) continue;
        return {.owner = ownerOf(*facts), .icon = iconOf(*facts, name)};
    }
    return {};
}

/// Looked for once for each program: the menus' entries are many.
Image RunningApplications::iconOf(const ProcessFacts& facts, const std::string& name) {
    const auto [place, isNew] = icons_.try_emplace({facts.executable, name});
    if (!isNew) return place->second;
    place->second = iconOfPackage(facts, bundles_);
    // An interpreter's own entry is not that of what it runs.
    const bool isItself = lastPathComponent(facts.executable) == name;
    if (place->second.path.empty() && isItself) {
        place->second = menuIcon(facts.executable, environment_);
    }
    return place->second;
}

/// Another run of the installer, or its helper.
bool RunningApplications::isOwn(const ProcessFacts& facts) const {
    return ownPackage_ && packageOfProgram(facts.executable) == ownPackage_;
}

Subscription RunningApplications::onTerminated(
    std::function<void(const std::string& name)> handler) {
    return observers_.add(std::move(handler));
}

void RunningApplications::watch(FileDescriptor process, const std::string& name) {
    const int number = process.get();
    Subscription end = watcher_.watch(number, [this, number] { ended(number); });
    watched_.insert_or_assign(number, Watched{std::move(process), name, std::move(end)});
}

void RunningApplications::ended(int process) {
    const auto node = watched_.extract(process);
    if (node.empty()) return;
    untold_.push_back(node.mapped().name);
    node.mapped().end.cancel();
    tellSoon();
}

void RunningApplications::tellSoon() {
    if (isTimerSet_) return;
    constexpr std::chrono::nanoseconds shortestTime = std::chrono::milliseconds(200);
    const auto sinceLastTold = std::chrono::steady_clock::now() - lastTold_;
    // The timer takes no time of zero.
    const auto wait = std::max(shortestTime - sinceLastTold, std::chrono::nanoseconds(1));
    const itimerspec time{{}, {.tv_sec = 0, .tv_nsec = wait.count()}};
    if (!timer_ || ::timerfd_settime(timer_.get(), 0, &time, nullptr) != 0) {
        tell();
        return;
    }
    isTimerSet_ = true;
    timerWatch_ = watcher_.watch(timer_.get(), [this] { tell(); });
}

void RunningApplications::tell() {
    timerWatch_.cancel();
    isTimerSet_ = false;
    lastTold_ = std::chrono::steady_clock::now();
    const std::vector<std::string> names = std::exchange(untold_, {});
    scanWhileTelling_.reset();
    isTelling_ = true;
    // A handler may scan anew, and may end this object's life.
    const std::weak_ptr<const bool> life = life_;
    for (const std::string& name : names) {
        observers_.call(name);
        if (life.expired()) return;
    }
    isTelling_ = false;
    scanWhileTelling_.reset();
}

}  // namespace installer
