#include "foundation/rtf/RtfReader.h"

#include "foundation/rtf/Interpreter.h"
#include "foundation/rtf/Tokenizer.h"

namespace installer {

namespace {

bool beginsAsRtf(std::string_view rtf) {
    rtf::Tokenizer tokenizer(rtf);
    if (tokenizer.next().kind != rtf::Token::Kind::groupStart) return false;
    const rtf::Token word = tokenizer.next();
    return word.kind == rtf::Token::Kind::controlWord && word.text == "rtf";
}

}  // namespace

std::variant<StyledText, RtfError> readRtf(std::string_view rtf) {
    if (rtf.empty()) return RtfError{"the text is empty"};
    if (!beginsAsRtf(rtf)) return RtfError{"the text does not begin with {\\rtf"};
    rtf::Tokenizer tokenizer(rtf);
    rtf::Interpreter interpreter;
    do {
        const rtf::Token token = tokenizer.next();
        if (token.kind == rtf::Token::Kind::end) {
            return RtfError{"the text ends before its groups do"};
        }
        interpreter.obey(token);
        if (interpreter.depth() > rtf::Interpreter::deepestNesting) {
            return RtfError{"the groups of the text nest too deeply"};
        }
    } while (interpreter.depth() > 0);
    return interpreter.take();
}

}  // namespace installer
