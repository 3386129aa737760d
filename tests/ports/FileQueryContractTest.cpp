// What every search for entries by name promises.

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "linux/files/LinuxFileQuery.h"
#include "linux/process/PollEventLoop.h"
#include "tests/ports/Adapter.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/ScratchFolder.h"

namespace installer::test {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A machine whose files are searched.
class FileQueryScene {
  public:
    virtual ~FileQueryScene() = default;
    [[nodiscard]] virtual FileQueries& queries() = 0;
    [[nodiscard]] virtual EventLoop& loop() = 0;
    /// An absolute path on the machine.
    [[nodiscard]] virtual std::string at(const std::string& below) const = 0;
    virtual void addFile(const std::string& below) = 0;
};

namespace {

class SearchOnDisk : public FileQueryScene {
  public:
    FileQueries& queries() override { return queries_; }
    EventLoop& loop() override { return loop_; }
    std::string at(const std::string& below) const override { return disk_.at(below); }
    void addFile(const std::string& below) override { disk_.add(below, ""); }

  private:
    ScratchFolder disk_;
    PollEventLoop loop_;
    LinuxFileQueries queries_{loop_};
};

class SearchInMemory : public FileQueryScene {
  public:
    FileQueries& queries() override { return queries_; }
    EventLoop& loop() override { return loop_; }
    std::string at(const std::string& below) const override { return "/disk/" + below; }
    void addFile(const std::string& below) override {
        const std::string name = below.substr(below.rfind('/') + 1);
        queries_.found[name].push_back({name, at(below)});
    }

  private:
    FakeEventLoop loop_;
    std::vector<std::string> journal_;
    FakeFileQueries queries_{loop_.turns, journal_};
};

template <class Search>
std::unique_ptr<FileQueryScene> makeFileQueryScene() {
    return std::make_unique<Search>();
}

}  // namespace

class FileQueryContract : public Contract<FileQueryScene> {
  protected:
    void gather(FileQuery& query) {
        query.start();
        while (query.isGathering()) scene_->loop().runUntilNow();
    }
    static std::vector<std::string> paths(const FileQuery& query) {
        std::vector<std::string> paths;
        for (std::size_t index = 0; index < query.resultCount(); ++index) {
            const FoundFile found = query.result(index);
            EXPECT_EQ(found.name, found.path.substr(found.path.rfind('/') + 1));
            paths.push_back(found.path);
        }
        return paths;
    }
    [[nodiscard]] std::unique_ptr<FileQuery> queryFor(const std::string& name,
                                                      const std::vector<std::string>& scopes) {
        auto query = scene_->queries().create();
        query->setNameLike(name);
        query->setSearchScopes(scopes);
        return query;
    }
};

TEST_P(FileQueryContract, AQueryThatWasNotStartedHasNoResults) {
    scene_->addFile("scope/Tool");
    const auto query = queryFor("Tool", {scene_->at("scope")});
    EXPECT_FALSE(query->isGathering());
    scene_->loop().runUntilNow();
    EXPECT_EQ(query->resultCount(), 0U);
}

TEST_P(FileQueryContract, FindsTheNameAtEveryDepthBelowItsScopes) {
    for (const char* file :
         {"one/Tool", "one/a/b/Tool", "one/a/other", "two/Tool", "three/Tool", "one more/Tool"}) {
        scene_->addFile(file);
    }
    const auto query = queryFor("Tool", {scene_->at("one"), scene_->at("two")});
    gather(*query);
    EXPECT_THAT(paths(*query),
                UnorderedElementsAre(scene_->at("one/Tool"), scene_->at("one/a/b/Tool"),
                                     scene_->at("two/Tool")));
}

TEST_P(FileQueryContract, ARelativeScopeFindsNothing) {
    scene_->addFile("scope/Tool");
    const auto query = queryFor("Tool", {"scope", ""});
    gather(*query);
    EXPECT_THAT(paths(*query), IsEmpty());
}

TEST_P(FileQueryContract, ResultsStayWhenTheQueryIsStoppedUntilItIsStartedAnew) {
    scene_->addFile("scope/Tool");
    const auto query = queryFor("Tool", {scene_->at("scope")});
    gather(*query);
    query->stop();
    EXPECT_FALSE(query->isGathering());
    scene_->addFile("scope/more/Tool");
    scene_->loop().runUntilNow();
    EXPECT_THAT(paths(*query), UnorderedElementsAre(scene_->at("scope/Tool")));
    gather(*query);
    EXPECT_THAT(paths(*query),
                UnorderedElementsAre(scene_->at("scope/Tool"), scene_->at("scope/more/Tool")));
}

TEST_P(FileQueryContract, AQueryThatIsStoppedAtOnceFindsNothingLater) {
    scene_->addFile("scope/Tool");
    const auto query = queryFor("Tool", {scene_->at("scope")});
    query->start();
    query->stop();
    EXPECT_FALSE(query->isGathering());
    scene_->loop().runUntilNow();
    EXPECT_EQ(query->resultCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    FileQuery, FileQueryContract,
    testing::Values(Adapter<FileQueryScene>{"Linux", makeFileQueryScene<SearchOnDisk>},
                    Adapter<FileQueryScene>{"Fake", makeFileQueryScene<SearchInMemory>}),
    AdapterName());

}  // namespace installer::test
