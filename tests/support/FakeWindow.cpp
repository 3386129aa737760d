#include "tests/support/FakeWindow.h"

#include <algorithm>
#include <cctype>

#include "foundation/values/PackageName.h"
#include "foundation/values/Paths.h"

namespace installer::test {

namespace {

/// A scheme of letters, a colon, and something behind it.
bool isAddress(const std::string& text) {
    const auto colon = text.find(':');
    if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) return false;
    return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(colon),
                       [](unsigned char letter) { return std::isalpha(letter) != 0; });
}

}  // namespace

std::optional<std::string> FakeFolderPanel::runModal(const FolderRequest& request) {
    requests.push_back(request);
    if (!answer || *answer == request.startFolder) return answer;
    const bool isOffered =
        !isPackageName(lastPathComponent(*answer)) && request.shouldShow(*answer);
    return isOffered ? answer : std::nullopt;
}

void FakeWorkspace::endAtOnce(const std::vector<std::string>& names) {
    for (const std::string& name : names) std::erase(running, name);
    for (const std::string& name : names) {
        const auto watched = watched_.find(name);
        if (watched == watched_.end()) continue;
        watched_.erase(watched);
        terminations_.call(name);
    }
}

std::vector<std::string> FakeWorkspace::runningApplications() {
    // What has ended and was not told yet stays watched.
    std::multiset<std::string> watched(running.begin(), running.end());
    for (const std::string& name : watched_) {
        if (!watched.contains(name)) watched.insert(name);
    }
    watched_ = std::move(watched);
    return running;
}

bool FakeWorkspace::open(const std::string& addressOrPath, bool isThere) {
    if (isThere) opened.push_back(addressOrPath);
    if (isThere && canOpen) return true;
    log_.log("Could not open " + addressOrPath);
    return false;
}

bool FakeWorkspace::openAddress(const std::string& address) {
    return open(address, isAddress(address));
}

bool FakeWorkspace::openFile(const std::string& path) {
    return open(path, files_.exists(path));
}

Subscription FakeWorkspace::onApplicationTerminated(
    std::function<void(const std::string& name)> handler) {
    return terminations_.add(std::move(handler));
}

std::unique_ptr<LaunchedApplication> FakeWorkspace::launchHidden(
    const std::string& path, const std::vector<std::string>& arguments) {
    class Launched : public LaunchedApplication {
      public:
        Launched(std::string path, std::vector<std::string>& journal)
            : path_(std::move(path)), journal_(journal) {}
        void terminate() override { journal_.push_back("terminate " + path_); }

      private:
        std::string path_;
        std::vector<std::string>& journal_;
    };
    std::string line = "launch " + path;
    for (const std::string& argument : arguments) line += " " + argument;
    journal_.push_back(line);
    if (!canLaunch || !files_.exists(path)) return nullptr;
    return std::make_unique<Launched>(path, journal_);
}

Image FakeWorkspace::iconOfFile(const std::string& path) {
    const auto icon = icons.find(path);
    return icon == icons.end() ? Image() : icon->second;
}

}  // namespace installer::test
