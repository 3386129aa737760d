#include "tools/mkinstaller/lint/basis/XmlScan.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include <expat.h>

#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

struct Scan {
    const XmlEvents& events;
    XML_Parser parser;
    std::vector<std::string> texts = {};

    [[nodiscard]] std::size_t line() const { return XML_GetCurrentLineNumber(parser); }
};

void XMLCALL startElement(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto& scan = *static_cast<Scan*>(data);
    XmlEvents::Attributes values;
    for (; attributes[0] != nullptr; attributes += 2) values[attributes[0]] = attributes[1];
    scan.texts.emplace_back();
    if (scan.events.start) scan.events.start(scan.line(), name, values);
}

void XMLCALL endElement(void* data, const XML_Char* name) {
    auto& scan = *static_cast<Scan*>(data);
    if (scan.events.end) scan.events.end(name, scan.texts.back());
    scan.texts.pop_back();
}

void XMLCALL characters(void* data, const XML_Char* text, int length) {
    auto& scan = *static_cast<Scan*>(data);
    if (!scan.texts.empty()) scan.texts.back().append(text, static_cast<std::size_t>(length));
}

struct ParserDeleter {
    void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

}  // namespace

std::optional<XmlError> scanXml(std::string_view text, const XmlEvents& events) {
    const std::unique_ptr<XML_ParserStruct, ParserDeleter> parser(XML_ParserCreate(nullptr));
    if (!parser || text.size() > INT_MAX) return XmlError{1, "the file is too large"};
    Scan scan{events, parser.get()};
    XML_SetUserData(parser.get(), &scan);
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), characters);
    if (XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) ==
        XML_STATUS_OK) {
        return std::nullopt;
    }
    // A text that ends too early does so on its last line, not on an empty one behind it.
    const std::size_t lines = lineOf(text, text.find_last_not_of(" \t\r\n") + 1);
    return XmlError{std::min(scan.line(), lines), XML_ErrorString(XML_GetErrorCode(parser.get()))};
}

std::optional<XmlError> xmlErrorIn(std::string_view text) {
    return scanXml(text, {});
}

}  // namespace installer
