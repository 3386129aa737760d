#include "tests/faults/engine/FaultOracle.h"

#include <algorithm>
#include <array>
#include <set>

namespace installer::test {

namespace {

bool isAtOrBelow(const std::string& path, const std::string& folder) {
    return path == folder || path.starts_with(folder + "/");
}

bool isOneOf(const std::string& text, const std::vector<std::string>& texts) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = text.find('\n', start)) != std::string::npos;
         start = end + 1) {
        lines.push_back(text.substr(start, end - start));
    }
    if (start < text.size()) lines.push_back(text.substr(start) + " (without an end)");
    return lines;
}

class Oracle {
  public:
    Oracle(const DiskTree& before, const DiskTree& after, const RunReport& report)
        : before_(before), after_(after), report_(report), items_(fault_scene::items()) {}

    std::vector<std::string> complaints() {
        for (const ExpectedItem& item : items_) checkItem(item);
        checkEditorList();
        checkManifests();
        checkInstallerLog();
        checkReport();
        checkUnreadFolders();
        checkEverythingElse();
        return std::move(complaints_);
    }

  private:
    enum class State { absent, old, whole, broken };

    void complain(const std::string& text) { complaints_.push_back(text); }

    // The disk.

    /// What of an item counts: types, contents and targets, without owners and modes, which may
    /// lag behind. An item that lies in another one is looked at by itself.
    [[nodiscard]] DiskTree contentsOf(const DiskTree& tree, const std::string& top,
                                      const std::string& destination) const {
        DiskTree contents;
        for (auto entry = tree.lower_bound(top);
             entry != tree.end() && entry->first.starts_with(top); ++entry) {
            const auto& [path, found] = *entry;
            if (!isAtOrBelow(path, top)) continue;
            const std::string below = path.substr(top.size());
            if (isOfAnInnerItem(destination, destination + below)) continue;
            contents[below] = {.type = found.type, .contents = found.contents, .permissions = 0};
        }
        return contents;
    }

    [[nodiscard]] bool isOfAnInnerItem(const std::string& destination,
                                       const std::string& path) const {
        return std::any_of(items_.begin(), items_.end(), [&](const ExpectedItem& inner) {
            return inner.destination != destination &&
                   isAtOrBelow(inner.destination, destination) &&
                   isAtOrBelow(path, inner.destination);
        });
    }

    [[nodiscard]] State stateOf(const ExpectedItem& item) const {
        const std::string& path = item.destination;
        const DiskTree contents = contentsOf(after_, path, path);
        if (contents.empty()) return State::absent;
        if (contents == contentsOf(before_, item.source, path)) return State::whole;
        return contents == contentsOf(before_, path, path) ? State::old : State::broken;
    }

    // The exceptions that the rules make.

    [[nodiscard]] bool wasHit(const Faults::Call& call) const {
        return std::find(report_.hits.begin(), report_.hits.end(), call) != report_.hits.end();
    }

    /// An old item that could not be removed, or not even be seen, counts as installed.
    [[nodiscard]] bool couldNotBeRemoved(const std::string& path) const {
        return wasHit({"/bin/rm", "-fR", path}) || wasHit({"exists", path});
    }

    /// A later item replaces one that was installed before, the same one for another host or a
    /// folder that holds it. When that fails, or is refused, the first one is gone.
    [[nodiscard]] bool wasTakenAway(const ExpectedItem& item) const {
        return item.isReplacedLater && (report_.authDenied || isReported(item.destination));
    }

    /// An item that lies in one that failed is reported with it.
    [[nodiscard]] bool isReported(const std::string& path) const {
        return std::any_of(report_.failed.begin(), report_.failed.end(),
                           [&](const std::string& failed) { return isAtOrBelow(path, failed); });
    }

    /// What a search of the payload cannot read is passed over.
    [[nodiscard]] bool payloadWasNotReadWhole() const {
        return std::any_of(report_.hits.begin(), report_.hits.end(), [](const Faults::Call& call) {
            return call.front() == "readTree" && isAtOrBelow(call.at(1), fault_scene::payload);
        });
    }

    // The promises.

    void checkItem(const ExpectedItem& item) {
        const std::string& path = item.destination;
        const State state = stateOf(item);
        if (state == State::whole) return;
        if (state == State::broken) complain(path + " is neither the old item nor the new one");
        if (state == State::old && couldNotBeRemoved(path)) return;
        if (payloadWasNotReadWhole()) return;
        if (report_.successful) complain(path + " was not installed, and the run has succeeded");
        // Hosts are left out after a failure.
        if (item.isOfAHost || report_.authDenied || !report_.hasAuthorization) return;
        if (!isReported(path)) complain(path + " was not installed, and that is not reported");
    }

    /// The list of editors is written without a look at the outcome, and counts as installed.
    void checkEditorList() {
        const auto list = after_.find(fault_scene::editorList);
        if (list == after_.end() || list->second == before_.at(fault_scene::editorList)) return;
        // A row stands for an application that can be seen.
        if (wasHit({"exists", fault_scene::siblingEditor})) return;
        if (list->second.contents != fault_scene::newEditorList()) {
            complain("the list of editors is neither the old one nor the new one");
        }
    }

    /// A manifest that cannot be removed stays, and nobody is told.
    void checkManifests() {
        for (const std::string& path : fault_scene::staleManifests) {
            const auto manifest = after_.find(path);
            if (manifest == after_.end()) continue;
            if (manifest->second != before_.at(path)) complain(path + " has changed");
            if (report_.hits.empty()) complain(path + " was not removed");
        }
    }

    void checkInstallerLog() {
        const auto log = after_.find(fault_scene::installerLog);
        const std::string text = log == after_.end() ? "" : log->second.contents;
        if (log != after_.end() && text == before_.at(fault_scene::installerLog).contents) {
            if (!report_.installed.empty()) checkThatTheLogWasMissed();
            return;
        }
        std::string wanted;
        for (const std::string& path : report_.installed) wanted += path + "\n";
        if (text == wanted) return checkListed();
        checkThatTheLogWasMissed();
        // Where a full disk cannot even be emptied, the list may end too early.
        const bool mayEndEarly = wasHit({"setSize", fault_scene::installerLog});
        if (text.empty() || (mayEndEarly && wanted.starts_with(text))) return;
        complain("the installer log is neither the old one, nor empty, nor the new one: " + text);
    }

    /// A log that was not written is said in the system log only, and fails no run.
    void checkThatTheLogWasMissed() {
        const bool isSaid =
            std::any_of(report_.log.begin(), report_.log.end(), [](const std::string& line) {
                return line == "can't open installer log file for writing" ||
                       line.starts_with("can't write to installer log file: ");
            });
        if (!isSaid) complain("the installer log was not written, and nothing says so");
    }

    void checkListed() {
        const std::string& text = after_.at(fault_scene::installerLog).contents;
        for (const std::string& path : linesOf(text)) {
            if (path == fault_scene::editorList) continue;
            const auto item = std::find_if(
                items_.begin(), items_.end(),
                [&](const ExpectedItem& candidate) { return candidate.destination == path; });
            if (item == items_.end()) {
                complain("the installer log lists what is no item: " + path);
                continue;
            }
            const State state = stateOf(*item);
            if (state == State::old && couldNotBeRemoved(path)) continue;
            if (state == State::absent && wasTakenAway(*item)) continue;
            if (state != State::whole)
                complain("the installer log lists what is not there: " + path);
        }
    }

    void checkReport() {
        const bool failed =
            !report_.failed.empty() || report_.authDenied || !report_.hasAuthorization;
        if (report_.successful == failed) complain("the outcome is not what was reported");
        if (report_.alerts != report_.failed.size()) {
            complain("there were " + std::to_string(report_.alerts) + " alerts for " +
                     std::to_string(report_.failed.size()) + " failures");
        }
        for (const std::string& path : report_.failed) {
            if (!isOneOf("Could not install file: " + path, report_.log)) {
                complain("the system log does not say what failed: " + path);
            }
        }
    }

    /// A payload folder that cannot be read fails no run, but is said.
    void checkUnreadFolders() {
        for (const Faults::Call& call : report_.hits) {
            const bool reads = call.front() == "list" || call.front() == "readTree";
            if (!reads || !isAtOrBelow(call.at(1), fault_scene::payload)) continue;
            if (!isSaidToBeUnread(call.at(1))) {
                complain("the system log does not say what could not be read: " + call.at(1));
            }
        }
    }

    /// The folder itself, a folder around it or one in it is named as unread; or the payload seems
    /// to be missing. A folder in an item that is copied whole is named by the file manager.
    [[nodiscard]] bool isSaidToBeUnread(const std::string& folder) const {
        const std::string ofPayload = "This payload folder cannot be read: ";
        const std::string inFolder = "Could not list the folder " + folder + "/";
        return std::any_of(report_.log.begin(), report_.log.end(), [&](const std::string& line) {
            if (line == "There is no payload to install: " + fault_scene::payload) return true;
            if (line.starts_with(inFolder)) return true;
            if (!line.starts_with(ofPayload)) return false;
            const std::string unread = line.substr(ofPayload.size());
            return isAtOrBelow(unread, folder) || isAtOrBelow(folder, unread);
        });
    }

    /// Nothing may have changed outside the destinations; folders above them may have been made.
    void checkEverythingElse() {
        std::set<std::string> paths;
        for (const auto& [path, entry] : before_) paths.insert(path);
        for (const auto& [path, entry] : after_) paths.insert(path);
        for (const std::string& path : paths) {
            if (isADestination(path)) continue;
            const auto old = before_.find(path);
            const auto now = after_.find(path);
            if (now == after_.end()) {
                complain(path + " is gone");
            } else if (old == before_.end()) {
                if (now->second.type != FileType::folder || !isAboveADestination(path)) {
                    complain(path + " was made");
                }
            } else if (old->second != now->second) {
                complain(path + " has changed");
            }
        }
    }

    [[nodiscard]] bool isADestination(const std::string& path) const {
        if (path == fault_scene::installerLog || path == fault_scene::editorList) return true;
        if (isOneOf(path, fault_scene::staleManifests)) return true;
        return std::any_of(items_.begin(), items_.end(), [&](const ExpectedItem& item) {
            return isAtOrBelow(path, item.destination);
        });
    }

    [[nodiscard]] bool isAboveADestination(const std::string& path) const {
        return std::any_of(items_.begin(), items_.end(), [&](const ExpectedItem& item) {
            return isAtOrBelow(item.destination, path);
        });
    }

    const DiskTree& before_;
    const DiskTree& after_;
    const RunReport& report_;
    std::vector<ExpectedItem> items_;
    std::vector<std::string> complaints_;
};

}  // namespace

std::vector<std::string> complaints(const DiskTree& before, const DiskTree& after,
                                    const RunReport& report) {
    return Oracle(before, after, report).complaints();
}

}  // namespace installer::test
