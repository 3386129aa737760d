#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/ScratchFolder.h"
#include "tools/mkinstaller/lint/basis/Findings.h"
#include "tools/mkinstaller/sources/Kit.h"

namespace installer::test {

/// The kit of this build.
[[nodiscard]] Kit kitOfBuild();

/// The sources of the sample product.
[[nodiscard]] std::string sampleSources();

/// What lint finds in a product's folder or a bundle; each of its checks must be possible here.
[[nodiscard]] std::vector<Finding> lintAt(const std::string& path);

/// A product of its own in three languages, made as a maker makes one, to be spoiled by a test.
class ProductFolder {
  public:
    ProductFolder();

    /// The product's folder.
    [[nodiscard]] const std::string& root() const { return root_; }
    [[nodiscard]] std::string at(const std::string& below) const { return root_ + "/" + below; }

    [[nodiscard]] std::string read(const std::string& below) const;
    void write(const std::string& below, std::string_view contents) const;
    /// Replaces the one place where the text stands; a text that is not there fails the test.
    void replace(const std::string& below, std::string_view text, std::string_view by) const;
    void append(const std::string& below, std::string_view text) const;
    void remove(const std::string& below) const;
    void rename(const std::string& below, const std::string& to) const;
    void link(const std::string& target, const std::string& below) const;
    void setMode(const std::string& below, unsigned mode) const;

    /// The first line that holds the text; 1 for an empty text.
    [[nodiscard]] std::size_t lineOf(const std::string& below, std::string_view text) const;

    [[nodiscard]] std::vector<Finding> lint() const;

  private:
    ScratchFolder scratch_;
    std::string root_;
};

/// A mistake that a maker can make, and how it must be told.
struct Mistake {
    std::string name;  ///< of the test
    std::string code;
    std::function<void(const ProductFolder&)> make;
    std::string file;       ///< where it is told, below the product's folder; empty for the folder
    std::string text = {};  ///< on the first line that holds this; the first line when it is empty
    std::vector<std::string> alsoTold = {};  ///< codes of what follows from it
};

using Change = std::function<void(const ProductFolder&)>;

// Changes of one file.
[[nodiscard]] Change replacing(std::string file, std::string text, std::string by);
[[nodiscard]] Change appending(std::string file, std::string text);
[[nodiscard]] Change writing(std::string file, std::string contents);
[[nodiscard]] Change removing(std::string path);
[[nodiscard]] Change renaming(std::string from, std::string to);
[[nodiscard]] Change linking(std::string target, std::string path);
/// Several changes, one after the other.
[[nodiscard]] Change inTurn(std::vector<Change> changes);

/// For the name of a row's test.
[[nodiscard]] std::string nameOfMistake(const testing::TestParamInfo<Mistake>& row);

[[nodiscard]] std::string printed(const std::vector<Finding>& findings);

/// Makes the mistake in a product and expects it to be told by its code at its line, and nothing
/// else but what follows from it.
void expectTold(const Mistake& mistake);

}  // namespace installer::test
