#include <filesystem>

#include <gmock/gmock.h>

#include "tests/tools/mkinstaller/ProductFolder.h"
#include "tools/mkinstaller/making/NewProduct.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/Product.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer::test {

namespace {

using testing::HasSubstr;
using testing::Optional;

NewProductNames acme() {
    return {.company = "Acme",
            .product = "Filters 2",
            .identifier = "com.acme.filters",
            .website = {},
            .languages = {}};
}

TEST(NewProduct, IsCleanInThreeLanguages) {
    EXPECT_EQ(printed(ProductFolder().lint()), "");
}

TEST(NewProduct, IsCleanInAllLanguagesWithNamesThatNeedEscapes) {
    const ScratchFolder scratch;
    NewProductNames names = acme();
    names.company = "M\u00FCller & S\u00F6hne <GmbH>";
    names.product = "\u82B1 \"{\\Bl\u00FCte}\" \U0001F338";
    ASSERT_EQ(makeProduct(scratch.at("product"), names, kitOfBuild()), std::nullopt);
    const Product product = Product::at(scratch.at("product")).value();
    EXPECT_EQ(product.languages().size(), 6u);
    EXPECT_EQ(product.name("company_name"), names.company);
    EXPECT_EQ(product.name("product_name"), names.product);
    EXPECT_EQ(printed(lintAt(product.root)), "");
}

TEST(NewProduct, HasTheTextsOfTheSampleWhenItIsCalledLikeIt) {
    const ScratchFolder scratch;
    const SampleNames sample = SampleNames::of(kitOfBuild());
    ASSERT_EQ(makeProduct(scratch.at("product"),
                          {.company = sample.company,
                           .product = sample.product,
                           .identifier = sample.identifier,
                           .website = sample.website,
                           .languages = {}},
                          kitOfBuild()),
              std::nullopt);
    for (const std::string& language : Product::at(sampleSources()).value().languages()) {
        for (const std::string& file : sortedNames(sampleSources() + "/" + language + ".lproj")) {
            const std::string below = "/" + language + ".lproj/" + file;
            EXPECT_EQ(contentsOf(scratch.at("product") + below),
                      contentsOf(sampleSources() + below))
                << below;
        }
    }
}

TEST(NewProduct, NamesNothingOfTheSample) {
    const ProductFolder product;
    const SampleNames sample = SampleNames::of(kitOfBuild());
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(product.root())) {
        if (!entry.is_regular_file()) continue;
        ++files;
        const std::string text = contentsOf(entry.path().string()).value();
        for (const std::string& name : {sample.company, sample.product, sample.identifier,
                                        sample.website, std::string("tonewright")}) {
            EXPECT_EQ(text.find(name), std::string::npos) << entry.path() << ": " << name;
            EXPECT_EQ(entry.path().string().find(name), std::string::npos) << entry.path();
        }
    }
    EXPECT_GT(files, 20u);
}

TEST(NewProduct, TakesTheAddressesFromTheIdentifierOrTheWebsite) {
    const ProductFolder product;
    EXPECT_THAT(product.read("en.lproj/Localizable.strings"),
                HasSubstr("https://www.acme.com/en/register/filters"));
    const ScratchFolder scratch;
    NewProductNames names = acme();
    names.website = "acme.example";
    ASSERT_EQ(makeProduct(scratch.at("product"), names, kitOfBuild()), std::nullopt);
    EXPECT_THAT(scratch.read("product/de.lproj/Localizable.strings"),
                HasSubstr("https://www.acme.example/de/help/%@/first-steps"));
}

TEST(NewProduct, LeavesAFolderAloneThatHoldsSomething) {
    const ScratchFolder scratch;
    scratch.add("product/mine.txt", "mine");
    EXPECT_THAT(makeProduct(scratch.at("product"), acme(), kitOfBuild()),
                Optional(HasSubstr("is not empty")));
    EXPECT_EQ(scratch.names("product"), std::vector<std::string>{"mine.txt"});
}

TEST(NewProduct, FillsAnEmptyFolder) {
    const ScratchFolder scratch;
    scratch.addFolder("product");
    EXPECT_EQ(makeProduct(scratch.at("product"), acme(), kitOfBuild()), std::nullopt);
}

TEST(NewProductNames, TheNamesOfAcmeAreFine) {
    EXPECT_EQ(problemOf(acme(), kitOfBuild()), std::nullopt);
}

struct BadNames {
    std::string name;
    std::function<void(NewProductNames&)> spoil;
    std::string problem;
};

class NewProductBadNames : public testing::TestWithParam<BadNames> {};

TEST_P(NewProductBadNames, AreRefused) {
    NewProductNames names = acme();
    GetParam().spoil(names);
    EXPECT_THAT(problemOf(names, kitOfBuild()), Optional(HasSubstr(GetParam().problem)));
}

INSTANTIATE_TEST_SUITE_P(
    NewProduct, NewProductBadNames,
    testing::Values(
        BadNames{"CompanyWithASlash", [](auto& names) { names.company = "A/B"; }, "the company"},
        BadNames{"ProductEmpty", [](auto& names) { names.product = ""; }, "the product"},
        BadNames{"ProductOfDots", [](auto& names) { names.product = ".."; }, "the product"},
        BadNames{"ProductWithALineEnd", [](auto& names) { names.product = "A\nB"; }, "the product"},
        BadNames{"ProductTooLong", [](auto& names) { names.product.assign(250, 'x'); }, "too long"},
        BadNames{"IdentifierWithoutDots", [](auto& names) { names.identifier = "filters"; },
                 "not reverse-domain"},
        BadNames{"IdentifierOfSomebodyElse",
                 [](auto& names) { names.identifier = "com.apple.mail"; }, "one of Apple"},
        BadNames{"LanguageUnknown", [](auto& names) { names.languages = {"en", "tlh"}; },
                 "\"tlh\""}),
    [](const testing::TestParamInfo<BadNames>& row) { return row.param.name; });

}  // namespace

}  // namespace installer::test
