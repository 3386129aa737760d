#include "tests/support/FakeFileQuery.h"

#include <algorithm>

namespace installer::test {

class FakeFileQueries::Fake : public FileQuery {
  public:
    explicit Fake(FakeFileQueries& owner) : owner_(owner) {}
    ~Fake() override { ++owner_.destroyed; }

    void setNameLike(const std::string& pattern) override { pattern_ = pattern; }
    void setSearchScopes(const std::vector<std::string>& folders) override { folders_ = folders; }

    void start() override {
        std::string line = "find " + pattern_ + " below";
        for (const std::string& folder : folders_) line += " " + folder;
        owner_.journal_.push_back(line);
        isRunning_ = true;
        startedAtTurn_ = owner_.turns_;
        results_.clear();
    }
    [[nodiscard]] bool isGathering() const override { return isRunning_ && !hasGathered(); }
    void stop() override {
        owner_.journal_.emplace_back("stop");
        if (isRunning_) results_ = results();
        isRunning_ = false;
    }
    [[nodiscard]] std::size_t resultCount() const override {
        owner_.countedWhileRunning.push_back(isRunning_);
        return results().size();
    }
    [[nodiscard]] FoundFile result(std::size_t index) const override { return results().at(index); }

  private:
    [[nodiscard]] bool hasGathered() const {
        return owner_.turns_ - startedAtTurn_ >= owner_.turnsNeeded;
    }
    [[nodiscard]] bool isInScope(const std::string& path) const {
        return std::any_of(folders_.begin(), folders_.end(), [&](const std::string& folder) {
            return folder.starts_with('/') && path.starts_with(folder + "/");
        });
    }
    [[nodiscard]] std::vector<FoundFile> results() const {
        if (!isRunning_) return results_;
        const auto entries = owner_.found.find(pattern_);
        if (!hasGathered() || entries == owner_.found.end()) return {};
        std::vector<FoundFile> results;
        for (const FoundFile& found : entries->second) {
            if (isInScope(found.path)) results.push_back(found);
        }
        return results;
    }

    FakeFileQueries& owner_;
    std::string pattern_;
    std::vector<std::string> folders_;
    bool isRunning_ = false;
    int startedAtTurn_ = 0;
    std::vector<FoundFile> results_;
};

std::unique_ptr<FileQuery> FakeFileQueries::create() {
    ++created;
    return std::make_unique<Fake>(*this);
}

}  // namespace installer::test
