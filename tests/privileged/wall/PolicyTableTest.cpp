// Each row of the table is allowed; each way to get a row slightly wrong is refused, unless that is
// what another row says.

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "privileged/wall/Policy.h"
#include "tests/privileged/wall/PolicyRows.h"

namespace installer::test {
namespace {

/// The same but for which paths they are.
bool isSame(const ToolArguments& one, const ToolArguments& other) {
    return std::ranges::equal(one, other, [](const std::string& a, const std::string& b) {
        return isPath(a) ? isPath(b) : a == b;
    });
}

bool isRow(const std::string& tool, const ToolArguments& arguments) {
    return std::ranges::any_of(policyRows(), [&](const PolicyRow& row) {
        return row.tool == tool && isSame(row.arguments, arguments);
    });
}

std::optional<Command> allowedRow(const std::string& tool, const ToolArguments& arguments) {
    InvokingUser user(65534);
    return allowedCommand({tool, arguments}, user, ProtectedFolders());
}

/// Texts that are nearly the text.
std::vector<std::string> variations(const std::string& text) {
    std::vector<std::string> texts = {"",
                                      text + " ",
                                      " " + text,
                                      text + "/",
                                      text + text,
                                      text + "\n",
                                      text + '\0',
                                      '\0' + text,
                                      text.substr(0, text.size() - 1),
                                      "-" + text,
                                      "--" + text,
                                      text.substr(1),
                                      "./" + text,
                                      "../" + text,
                                      text + "\xff",
                                      "'" + text + "'"};
    for (std::size_t index = 0; index < text.size(); ++index) {
        for (const int difference : {-1, 1, 0x20, -0x80}) {
            std::string changed = text;
            changed[index] = static_cast<char>(changed[index] + difference);
            texts.push_back(changed);
        }
    }
    return texts;
}

std::vector<std::string> brokenPaths() {
    return {"",
            "/",
            "relative",
            "./x",
            "../x",
            "-fR",
            "--help",
            "/a/",
            "//a",
            "/a//b",
            "/.",
            "/..",
            "/a/.",
            "/a/..",
            "/a/./b",
            "/a/../b",
            "~/a",
            "*",
            std::string("/a\0b", 4),
            "$HOME",
            "C:\\a",
            "\xff",
            std::string(4096, '/'),
            "/" + std::string(4095, 'a'),
            "/" + std::string(60'000, 'a')};
}

class PolicyTable : public testing::TestWithParam<PolicyRow> {
  protected:
    /// Refused, unless it is what the table says.
    static void expectRefused(const std::string& tool, const ToolArguments& arguments) {
        EXPECT_EQ(allowedRow(tool, arguments).has_value(), isRow(tool, arguments))
            << tool << " " << testing::PrintToString(arguments);
    }
    void expectRefused(const ToolArguments& arguments) {
        expectRefused(GetParam().tool, arguments);
    }
};

TEST_P(PolicyTable, AllowsTheRow) {
    const PolicyRow& row = GetParam();
    const auto command = allowedRow(row.tool, row.arguments);
    ASSERT_TRUE(command);
    EXPECT_EQ(command->action, row.action);
    EXPECT_EQ(command->mode, row.mode);
    const bool actsOnAPath = row.action != Action::refreshDesktopDatabase;
    EXPECT_EQ(command->path, actsOnAPath ? somePath : "");
    EXPECT_EQ(command->source, row.action == Action::copy ? otherPath : "");
}

TEST_P(PolicyTable, RefusesAnotherTool) {
    for (const std::string& tool : variations(GetParam().tool)) {
        expectRefused(tool, GetParam().arguments);
    }
    for (const PolicyRow& other : policyRows()) expectRefused(other.tool, GetParam().arguments);
}

TEST_P(PolicyTable, RefusesARemovedArgument) {
    for (std::size_t index = 0; index < GetParam().arguments.size(); ++index) {
        ToolArguments arguments = GetParam().arguments;
        arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(index));
        expectRefused(arguments);
    }
    expectRefused({});
}

TEST_P(PolicyTable, RefusesADoubledArgument) {
    for (std::size_t index = 0; index < GetParam().arguments.size(); ++index) {
        ToolArguments arguments = GetParam().arguments;
        const std::string doubled = arguments[index];
        arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(index), doubled);
        expectRefused(arguments);
    }
}

TEST_P(PolicyTable, RefusesOneMoreArgumentAnywhere) {
    for (const std::string more : {"/third", "-v", "--", "", "0775", "-R", "nobody:admin"}) {
        for (std::size_t index = 0; index <= GetParam().arguments.size(); ++index) {
            ToolArguments arguments = GetParam().arguments;
            arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(index), more);
            expectRefused(arguments);
        }
    }
    ToolArguments many = GetParam().arguments;
    many.resize(100'000, somePath);
    expectRefused(many);
}

TEST_P(PolicyTable, RefusesAnotherOrder) {
    ToolArguments arguments = GetParam().arguments;
    std::ranges::sort(arguments);
    do {
        expectRefused(arguments);
    } while (std::ranges::next_permutation(arguments).found);
}

TEST_P(PolicyTable, RefusesAVariationOfAFixedArgument) {
    for (std::size_t index = 0; index < GetParam().arguments.size(); ++index) {
        if (isPath(GetParam().arguments[index])) continue;
        for (const std::string& text : variations(GetParam().arguments[index])) {
            ToolArguments arguments = GetParam().arguments;
            arguments[index] = text;
            expectRefused(arguments);
        }
    }
}

TEST_P(PolicyTable, RefusesTheArgumentOfAnotherRow) {
    for (const PolicyRow& other : policyRows()) {
        for (const std::string& text : other.arguments) {
            for (std::size_t index = 0; index < GetParam().arguments.size(); ++index) {
                ToolArguments arguments = GetParam().arguments;
                // Any text may stand where a path does, when it is one.
                if (isPath(arguments[index]) && text.starts_with("/")) continue;
                arguments[index] = text;
                expectRefused(arguments);
            }
        }
    }
}

TEST_P(PolicyTable, RefusesABrokenPath) {
    for (std::size_t index = 0; index < GetParam().arguments.size(); ++index) {
        if (!isPath(GetParam().arguments[index])) continue;
        for (const std::string& path : brokenPaths()) {
            ToolArguments arguments = GetParam().arguments;
            arguments[index] = path;
            expectRefused(arguments);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, PolicyTable, testing::ValuesIn(policyRows()),
                         [](const auto& row) { return std::string(row.param.name); });

/// Every mode that can be written, through each tool that takes one.
TEST(PolicyTableModes, AreTheFourOfTheTableAndNoOther) {
    std::set<std::string> taken;
    for (int mode = 0; mode <= 07777; ++mode) {
        std::string octal;
        for (const int shift : {9, 6, 3, 0}) octal += static_cast<char>('0' + (mode >> shift) % 8);
        for (const std::string& text : {octal, octal.substr(1), "0" + octal}) {
            for (const char* tool : {"/bin/chmod", "/usr/sbin/chmod"}) {
                if (allowedRow(tool, {"-R", text, somePath})) taken.insert(tool + (" " + text));
            }
            if (allowedRow("/bin/mkdir", {"-m" + text, "-p", somePath})) taken.insert("-m" + text);
        }
    }
    EXPECT_EQ(taken, (std::set<std::string>{"/bin/chmod 0664", "/bin/chmod 0775",
                                            "/usr/sbin/chmod 0644", "-m775"}));
}

}  // namespace
}  // namespace installer::test
