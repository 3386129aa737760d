#include "tests/support/FakeAuthorization.h"

#include <algorithm>
#include <utility>

namespace installer::test {

namespace {

class FakeTool : public PrivilegedTool {
  public:
    FakeTool(bool succeeded, std::string output, std::size_t chunk,
             std::function<void()> whenWaitedFor, std::function<void()> whenRead)
        : succeeded_(succeeded),
          output_(std::move(output)),
          chunk_(chunk),
          whenWaitedFor_(std::move(whenWaitedFor)),
          whenRead_(std::move(whenRead)) {}

    void waitUntilEnded() override { whenWaitedFor_(); }

    std::size_t readOutput(std::span<char> buffer) override {
        const std::size_t size = std::min({buffer.size(), chunk_, output_.size()});
        std::copy_n(output_.begin(), size, buffer.begin());
        output_.erase(0, size);
        if (size == 0 && !std::exchange(isReadToItsEnd_, true)) whenRead_();
        return size;
    }

    [[nodiscard]] bool hasSucceeded() const override { return succeeded_; }

  private:
    bool succeeded_;
    std::string output_;
    std::size_t chunk_;
    std::function<void()> whenWaitedFor_;
    std::function<void()> whenRead_;
    bool isReadToItsEnd_ = false;
};

std::string joinedWords(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) line += (line.empty() ? "" : " ") + word;
    return line;
}

}  // namespace

class FakeAuthorizations::Fake : public Authorization {
  public:
    explicit Fake(FakeAuthorizations& owner) : owner_(owner) {}
    ~Fake() override { ++owner_.destroyed; }

    bool obtain(std::uint32_t flags) override {
        owner_.obtainedFlags.push_back(flags);
        return owner_.obtainable;
    }
    AuthorizationTrouble trouble() const override { return owner_.trouble; }

    void limitTo(const WriteGrant& grant) override { owner_.grant = grant; }

    bool mayAskNow() const override { return owner_.asks && !wasAsked_; }

    PrivilegedLaunch execute(const std::string& tool,
                             const std::vector<std::string>& arguments) override {
        wasAsked_ = true;
        std::vector<std::string> command = {tool};
        command.insert(command.end(), arguments.begin(), arguments.end());
        owner_.journal_.push_back(joinedWords(command));
        if (const std::int32_t refusal = refusalOf(command); refusal != 0) {
            return {refusal, nullptr};
        }
        const bool isPlanned = owner_.isPlanned(command);
        if (!isPlanned) owner_.unplanned.push_back(joinedWords(command));
        const bool works = isPlanned && (!owner_.works || owner_.works(command));
        if (works) owner_.perform(command);
        std::string printed = owner_.output ? owner_.output(command) : "";
        return {0, std::make_unique<FakeTool>(
                       works, std::move(printed), owner_.chunk,
                       [&journal = owner_.journal_] { journal.emplace_back("wait"); },
                       [&read = owner_.toolsRead, tool] { read.push_back(tool); })};
    }

    void setProgressSink(ProgressSink* progress) override { owner_.progressSink = progress; }

  private:
    /// A refusal holds for everything that follows: nobody is asked twice.
    std::int32_t refusalOf(const std::vector<std::string>& command) {
        if (!owner_.obtainable) return authorization_status::denied;
        if (refused_ != 0) return refused_;
        const std::int32_t status = owner_.status ? owner_.status(command) : 0;
        const bool isRefusal =
            status == authorization_status::denied || status == authorization_status::canceled;
        if (isRefusal) refused_ = status;
        return status;
    }

    FakeAuthorizations& owner_;
    bool wasAsked_ = false;
    std::int32_t refused_ = 0;
};

std::unique_ptr<Authorization> FakeAuthorizations::create() {
    ++created;
    return std::make_unique<Fake>(*this);
}

bool FakeAuthorizations::isPlanned(const std::vector<std::string>& command) {
    const std::string& tool = command.front();
    const std::string& path = command.back();
    if (!grant || path == "-apps" || !path.starts_with('/')) return true;
    if (tool == "/bin/mkdir" && grant->leadsThrough(path)) {
        if (!files_.exists(path)) madeFolders_.insert(path);
        return true;
    }
    if (tool == "/usr/sbin/chown" && madeFolders_.contains(path)) return true;
    return tool == "/bin/rm" ? grant->mayRemove(path) : grant->holds(path);
}

void FakeAuthorizations::perform(const std::vector<std::string>& command) {
    const std::string& tool = command.front();
    const std::string& path = command.back();
    if (tool == "/bin/mkdir") {
        files_.makeFoldersAsAdministrator(path, 0775);
    } else if (tool == "/bin/rm") {
        files_.removeAsAdministrator(path);
    } else if (tool == "/bin/cp") {
        files_.copyAsAdministrator(command.at(2), path);
    } else if (tool == "/usr/sbin/chown") {
        const std::string& owner = command.at(2);
        const std::size_t colon = owner.find(':');
        files_.setOwnerAsAdministrator(path, owner.substr(0, colon), owner.substr(colon + 1));
    } else if (tool == "/bin/chmod" || tool == "/usr/sbin/chmod") {
        files_.setModeAsAdministrator(
            path, static_cast<std::uint32_t>(std::stoul(command.at(2), nullptr, 8)));
    } else if (tool == "/usr/bin/touch" && !files_.exists(path) &&
               files_.exists(path.substr(0, path.rfind('/')))) {
        files_.addFile(path);
        files_.setOwnerAsAdministrator(path, "root", "root");
    }
}

}  // namespace installer::test
