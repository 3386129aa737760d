#!/usr/bin/env python3
"""Proves that decision_rules.py finds what it is there to find, on a small tree made for each case."""

import contextlib
import io
import pathlib
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent

sys.path.insert(0, str(HERE))
import decision_rules  # noqa: E402

FILES = {
    "src/Door.h": """
inline constexpr int knocks = 3;
class Key;
/// Opens with open(key).
class Door {
  public:
    explicit Door(int width);
    [[nodiscard]] std::optional<std::string> open(const Key& key) const;
    void shut() { lock(); }
};
[[nodiscard]] bool isShut(const Door& door);
""",
    "src/Door.cpp": """
namespace {
constexpr std::array rules = {1, 2};
bool fits(const Key& key) {
    return matches(key) && Door::isOiled();
}
}  // namespace
Door::Door(int width) : width_(width) {}
std::optional<std::string> Door::open(const Key& key) const {
    if (!fits(key)) return std::nullopt;
    creak();
}
Result<std::vector<std::string>>
Door::hinges() const {
    return {};
}
""",
    "tests/DoorTest.cpp": "TEST(DoorTest, OpensWithItsKey) {\n}\n",
    "tests/test_visitor.py": "class Visitor(Test):\n    def test_knocks(self):\n        pass\n",
}


def table(*rows, head="question | file | function | test | when"):
    columns = head.count("|") + 1
    return "\n".join(["text", f"| {head} |", "|" + "---|" * columns, *rows, "text", ""])


def row(file="`src/Door.cpp`", function="`Door::open`", test="`DoorTest`", when="every run"):
    return f"| who opens? | {file} | {function} | {test} | {when} |"


class DecisionRules(unittest.TestCase):
    def run_on(self, text, program=False):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, content in {**FILES, "ARCHITECTURE.md": text}.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(content, encoding="utf-8")
            if not program:
                return decision_rules.all_faults(root)[1]
            sys.argv = ["decision_rules.py", folder]
            output = io.StringIO()
            with contextlib.redirect_stdout(output), self.assertRaises(SystemExit) as end:
                decision_rules.main()
            return end.exception.code, output.getvalue()

    def assertPasses(self, *rows, **head):
        self.assertEqual([], self.run_on(table(*rows, **head)))

    def assertFinds(self, expected, *rows, **head):
        self.assertEqual([f"ARCHITECTURE.md:4: {expected}"], self.run_on(table(*rows, **head)))

    def test_what_a_file_defines_is_found(self):
        for function in ("Door::open", "Door::Door", "Door::hinges", "fits", "rules"):
            with self.subTest(function):
                self.assertPasses(row(function=f"`{function}`"))

    def test_what_a_header_declares_is_found(self):
        for function in ("Door::open", "Door::Door", "Door::shut", "isShut", "knocks"):
            with self.subTest(function):
                self.assertPasses(row("`src/Door.h`", f"`{function}`"))

    def test_a_call_is_no_definition(self):
        for function in ("creak", "matches", "Door::isOiled", "Door::shut", "open"):
            with self.subTest(function):
                self.assertFinds(
                    f"src/Door.cpp does not define or declare {function}",
                    row(function=f"`{function}`"),
                )
        for function in ("lock", "Key::open", "rules"):
            with self.subTest(function):
                self.assertFinds(
                    f"src/Door.h does not define or declare {function}",
                    row("`src/Door.h`", f"`{function}`"),
                )

    def test_every_function_of_a_row_is_looked_for(self):
        self.assertPasses(row(function="`fits`, `rules`"))
        self.assertFinds(
            "src/Door.cpp does not define or declare lock", row(function="`fits`, `lock`")
        )
        self.assertFinds("this row names no function", row(function="the first one"))

    def test_a_file_that_is_not_there_is_found(self):
        self.assertFinds("there is no file `src/Window.cpp`", row("`src/Window.cpp`"))
        self.assertFinds("there is no file `src`", row("`src`"))
        self.assertFinds("there is no file (none is named)", row(""))

    def test_tests_of_both_languages_are_found(self):
        self.assertPasses(row(test="`DoorTest.OpensWithItsKey`, `Visitor.test_knocks`"))

    def test_a_test_that_is_not_there_is_found(self):
        self.assertFinds(
            "there is no test DoorTest.Shuts", row(test="`DoorTest.OpensWithItsKey`, `DoorTest.Shuts`")
        )
        self.assertFinds("this row names no test", row(test="the one of doors"))

    def test_a_rule_says_when_it_is_in_force(self):
        for when in decision_rules.WHEN:
            self.assertPasses(row(when=when))
        self.assertFinds(
            '"sometimes" is not one of: every run, in reserve, quiet run only, window only',
            row(when="sometimes"),
        )

    def test_a_type_is_declared_in_its_file(self):
        head = "name | file | type"
        self.assertPasses("| the way in | `src/Door.h` | `Door` |", head=head)
        self.assertFinds(
            "src/Door.h does not declare the type Key", "| what fits | `src/Door.h` | `Key` |", head=head
        )

    def test_other_tables_are_left_alone(self):
        other = "| folder | function |\n|---|---|\n| `nowhere` | `nothing` |\n\n"
        self.assertEqual([], self.run_on(other + table(row())))

    def test_the_program_tells_and_fails(self):
        self.assertEqual((0, "1 rows lead to what they name.\n"), self.run_on(table(row()), True))
        code, output = self.run_on(table(row(test="`Gone`")), True)
        self.assertEqual((1, "ARCHITECTURE.md:4: there is no test Gone\n"), (code, output))

    def test_a_document_without_such_a_table_fails(self):
        self.assertEqual(1, self.run_on("no table\n", True)[0])


if __name__ == "__main__":
    unittest.main()
