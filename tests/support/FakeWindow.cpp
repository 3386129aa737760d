#include "tests/support/FakeWindow.h"

namespace installer::test {

void FakeWorkspace::end(const std::string& name) {
    std::erase(running, name);
    terminations_.call(name);
}

bool FakeWorkspace::openAddress(const std::string& address) {
    opened.push_back(address);
    return canOpen;
}

bool FakeWorkspace::openFile(const std::string& path) {
    opened.push_back(path);
    return canOpen;
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
    if (!canLaunch) return nullptr;
    return std::make_unique<Launched>(path, journal_);
}

Image FakeWorkspace::iconOfFile(const std::string& path) {
    const auto icon = icons.find(path);
    return icon == icons.end() ? Image() : icon->second;
}

}  // namespace installer::test
