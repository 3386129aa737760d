#include "tools/mkinstaller/lint/window/LayoutFile.h"

#include <algorithm>
#include <utility>

namespace installer {

namespace {

/// Builds the layout while its file is read from the beginning to the end.
class LayoutBuilder {
  public:
    explicit LayoutBuilder(LayoutFile& layout) : layout_(layout) {}

    void start(std::size_t line, const std::string& element,
               const XmlEvents::Attributes& attributes) {
        const auto attribute = [&](const char* name) {
            const auto found = attributes.find(name);
            return found == attributes.end() ? std::string() : found->second;
        };
        line_ = line;
        if (isWidget(element)) {
            open_.push_back(layout_.widgets.size());
            layout_.widgets.push_back({attribute("class"), attribute("name"), line});
        } else if (element == "property" && !open_.empty() && property_ == nullptr) {
            auto& properties = layout_.widgets[open_.back()].properties;
            properties.push_back({attribute("name"), "", line, line, attribute("stdset") == "0"});
            property_ = &properties.back();
        } else if (element == "layout" || element == "spacer") {
            // Their properties are not the widget's.
            open_.push_back(layout_.widgets.size());
            layout_.widgets.push_back({"", attribute("name"), line});
        }
    }

    void end(const std::string& element, const std::string& text) {
        if (element == "pixmap" || isIconState(element)) {
            const auto start = text.find_first_not_of(" \t\r\n");
            if (start != std::string::npos) {
                const auto last = text.find_last_not_of(" \t\r\n");
                layout_.pictures.push_back({text.substr(start, last - start + 1), line_});
            }
        }
        if (element == "property") {
            property_ = nullptr;
        } else if (property_ != nullptr && property_->value.empty()) {
            property_->value = text;
            property_->valueLine = line_;
        } else if (isWidget(element) || element == "layout" || element == "spacer") {
            if (!open_.empty()) open_.pop_back();
        }
    }

  private:
    static bool isWidget(const std::string& element) {
        return element == "widget" || element == "action";
    }
    static bool isIconState(const std::string& element) {
        return element == "normaloff" || element == "normalon" || element == "disabledoff" ||
               element == "activeoff" || element == "selectedoff";
    }

    LayoutFile& layout_;
    std::vector<std::size_t> open_;
    LayoutFile::Property* property_ = nullptr;
    std::size_t line_ = 1;
};

}  // namespace

LayoutFile LayoutFile::parse(std::string_view text) {
    LayoutFile layout;
    LayoutBuilder builder(layout);
    layout.error = scanXml(
        text, {.start = [&](std::size_t line, const std::string& element,
                            const auto& attributes) { builder.start(line, element, attributes); },
               .end = [&](const std::string& element,
                          const std::string& content) { builder.end(element, content); }});
    std::erase_if(layout.widgets, [](const Widget& widget) { return widget.type.empty(); });
    return layout;
}

const LayoutFile::Widget* LayoutFile::widget(std::string_view name) const {
    const auto found = std::ranges::find(widgets, name, &Widget::name);
    return found == widgets.end() ? nullptr : &*found;
}

}  // namespace installer
