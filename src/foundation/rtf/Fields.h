#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace installer::rtf {

/// The fields of a document. Each has an instruction, and text as its result. A number below 0
/// means "no field".
class Fields {
  public:
    /// Makes a new field inside `outer`, or at the top if `outer` is below 0; returns its number.
    [[nodiscard]] std::int32_t begin(std::int32_t outer);
    void addToInstruction(std::int32_t field, char32_t character);
    /// The field's instruction is complete.
    void endInstruction(std::int32_t field);

    /// The address that a click on the field's result opens: the field's own, else that of the
    /// outer field. Empty if there is none.
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
/// Empty if the field is not a hyperlink, if it leads to a place in its own document, or if the
/// address is longer than 2,048 bytes.
[[nodiscard]] std::string linkOfInstruction(std::string_view instruction);

}  // namespace installer::rtf
