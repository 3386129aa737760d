#include "tests/tools/mkinstaller/ProductFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "ports/SystemLog.h"
#include "tools/mkinstaller/FindingOutput.h"
#include "tools/mkinstaller/lint/Linter.h"
#include "tools/mkinstaller/making/NewProduct.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/Product.h"

namespace installer::test {

namespace fs = std::filesystem;

Kit kitOfBuild() {
    return Kit{MKINSTALLER_RUNTIME};
}

std::string sampleSources() {
    return SAMPLE_SOURCES;
}

ProductFolder::ProductFolder() : root_(scratch_.at("product")) {
    const auto failure = makeProduct(root_,
                                     {.company = "Acme",
                                      .product = "Filters 2",
                                      .identifier = "com.acme.filters",
                                      .website = {},
                                      .languages = {"en", "de", "ja"}},
                                     kitOfBuild());
    EXPECT_EQ(failure.value_or(""), "");
}

std::string ProductFolder::read(const std::string& below) const {
    return scratch_.read("product/" + below);
}

void ProductFolder::write(const std::string& below, std::string_view contents) const {
    scratch_.add("product/" + below, contents);
}

void ProductFolder::replace(const std::string& below, std::string_view text,
                            std::string_view by) const {
    std::string contents = read(below);
    const auto place = contents.find(text);
    ASSERT_NE(place, std::string::npos) << below << " does not hold: " << text;
    contents.replace(place, text.size(), by);
    write(below, contents);
}

void ProductFolder::append(const std::string& below, std::string_view text) const {
    write(below, read(below) + std::string(text));
}

void ProductFolder::remove(const std::string& below) const {
    ASSERT_GT(fs::remove_all(at(below)), 0u) << below;
}

void ProductFolder::rename(const std::string& below, const std::string& to) const {
    fs::create_directories(fs::path(at(to)).parent_path());
    fs::rename(at(below), at(to));
}

void ProductFolder::link(const std::string& target, const std::string& below) const {
    fs::create_directories(fs::path(at(below)).parent_path());
    fs::create_symlink(target, at(below));
}

void ProductFolder::setMode(const std::string& below, unsigned mode) const {
    fs::permissions(at(below), fs::perms(mode));
}

std::size_t ProductFolder::lineOf(const std::string& below, std::string_view text) const {
    if (text.empty()) return 1;
    const std::string contents = read(below);
    const auto place = contents.find(text);
    EXPECT_NE(place, std::string::npos) << below << " does not hold: " << text;
    return installer::lineOf(contents, place);
}

std::vector<Finding> ProductFolder::lint() const {
    return lintAt(root_);
}

std::vector<Finding> lintAt(const std::string& path) {
    class Notes final : public SystemLog {
      public:
        void log(std::string_view line) override { ADD_FAILURE() << line; }
    };
    Notes notes;
    return installer::lint(Product::at(path).value(), kitOfBuild(), notes);
}

Change replacing(std::string file, std::string text, std::string by) {
    return [=](const ProductFolder& product) { product.replace(file, text, by); };
}

Change appending(std::string file, std::string text) {
    return [=](const ProductFolder& product) { product.append(file, text); };
}

Change writing(std::string file, std::string contents) {
    return [=](const ProductFolder& product) { product.write(file, contents); };
}

Change removing(std::string path) {
    return [=](const ProductFolder& product) { product.remove(path); };
}

Change renaming(std::string from, std::string to) {
    return [=](const ProductFolder& product) { product.rename(from, to); };
}

Change linking(std::string target, std::string path) {
    return [=](const ProductFolder& product) { product.link(target, path); };
}

Change inTurn(std::vector<Change> changes) {
    return [=](const ProductFolder& product) {
        for (const Change& change : changes) change(product);
    };
}

std::string nameOfMistake(const testing::TestParamInfo<Mistake>& row) {
    return row.param.name;
}

std::string printed(const std::vector<Finding>& findings) {
    std::string lines;
    for (const Finding& finding : findings) {
        lines += lineOf(finding, Strictness::warningsAllowed, Colors::none) + "\n";
    }
    return lines;
}

void expectTold(const Mistake& mistake) {
    const ProductFolder product;
    mistake.make(product);
    const std::string file = mistake.file.empty() ? product.root() : product.at(mistake.file);
    const std::size_t line = product.lineOf(mistake.file, mistake.text);

    const std::vector<Finding> findings = product.lint();
    const bool isTold = std::ranges::any_of(findings, [&](const Finding& finding) {
        return finding.kind->code == mistake.code && finding.place.file == file &&
               finding.place.line == line && !finding.problem.empty() && !finding.repair.empty();
    });
    EXPECT_TRUE(isTold) << "wanted " << file << ":" << line << ": " << mistake.code
                        << ", told was\n"
                        << printed(findings);
    for (const Finding& finding : findings) {
        const std::string code(finding.kind->code);
        const bool isWanted = code == mistake.code ||
                              std::ranges::find(mistake.alsoTold, code) != mistake.alsoTold.end();
        EXPECT_TRUE(isWanted) << "also told:\n" << printed({finding});
    }
}

}  // namespace installer::test
