#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace installer::rtf {

/// The fields of a document: each has an instruction, and a result that is text. Numbers below 0
/// stand for no field.
class Fields {
  public:
    /// A new field within another one or none.
    [[nodiscard]] std::int32_t begin(std::int32_t outer);
    void addToInstruction(std::int32_t field, char32_t character);
    /// The field's instruction is complete.
    void endInstruction(std::int32_t field);

    /// The address that a click on the field's result opens: its own, else that of the field
    /// around it. Empty for none.
    [[nodiscard]] std::string link(std::int32_t field) const;

  private:
    struct Field {
        std::string instruction;
        std::string link;
        bool isComplete = false;
    };

    std::vector<Field> fields_;
};

/// The address in a field's instruction, such as HYPERLINK "https://example.com" \l "place".
/// Empty when it is another field, leads to a place in its own document, or is longer than 2,048
/// bytes.
[[nodiscard]] std::string linkOfInstruction(std::string_view instruction);

}  // namespace installer::rtf
