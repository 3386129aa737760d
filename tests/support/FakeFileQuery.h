#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ports/FileQuery.h"

namespace installer::test {

/// Queries that find what a test says, when the event loop has turned often enough. Starts and
/// stops stand in the journal, as "find PATTERN below FOLDER" and "stop".
class FakeFileQueries : public FileQueries {
  public:
    /// Both outlive this object. `turns` counts the turns of the event loop.
    FakeFileQueries(const int& turns, std::vector<std::string>& journal)
        : turns_(turns), journal_(journal) {}

    std::map<std::string, std::vector<FoundFile>> found;  ///< by the pattern
    int turnsNeeded = 1;  ///< by each search, until it has its results

    /// For each time that results were counted: whether the search was still running.
    std::vector<bool> countedWhileRunning;

    int created = 0;    ///< queries made so far
    int destroyed = 0;  ///< and of these, those that are gone

    [[nodiscard]] std::unique_ptr<FileQuery> create() override;

  private:
    class Fake;

    const int& turns_;
    std::vector<std::string>& journal_;
};

}  // namespace installer::test
