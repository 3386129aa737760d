#include "foundation/text/StyledText.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "foundation/text/Text.h"

namespace installer {

namespace {

std::string textOf(const Paragraph& paragraph) {
    std::string text;
    for (const TextRun& run : paragraph.runs) text += run.text;
    return text;
}

/// Builds the runs of a paragraph anew from pieces of the old ones, which are taken in order.
class RunReplacer {
  public:
    explicit RunReplacer(const std::vector<TextRun>& runs) : runs_(runs) {}

    void keep(std::size_t length) {
        take(length, [this](const TextRun& run, std::size_t begin, std::size_t count) {
            add(std::string_view(run.text).substr(begin, count), run);
        });
    }

    /// Leaves `length` bytes out, at least one, and puts the text in their place.
    void replace(std::size_t length, std::string_view text) {
        bool isFirst = true;
        take(length, [&](const TextRun& run, std::size_t, std::size_t) {
            if (std::exchange(isFirst, false)) add(text, run);
        });
    }

    [[nodiscard]] std::vector<TextRun> finish() { return std::move(result_); }

  private:
    /// Calls `use` for the pieces of the runs that the next `length` bytes lie in.
    template <class Use>
    void take(std::size_t length, Use use) {
        while (length > 0) {
            const std::size_t count = std::min(length, runs_[run_].text.size() - place_);
            if (count > 0) use(runs_[run_], place_, count);
            length -= count;
            place_ += count;
            if (place_ == runs_[run_].text.size()) {
                ++run_;
                place_ = 0;
            }
        }
    }

    void add(std::string_view text, const TextRun& source) {
        if (text.empty()) return;
        if (sourceOfLast_ != &source) result_.push_back({.text = {}, .style = source.style});
        sourceOfLast_ = &source;
        result_.back().text += text;
    }

    const std::vector<TextRun>& runs_;
    std::vector<TextRun> result_;
    const TextRun* sourceOfLast_ = nullptr;
    std::size_t run_ = 0;
    std::size_t place_ = 0;
};

void replaceAll(Paragraph& paragraph, std::string_view placeholder, std::string_view replacement) {
    const std::string text = textOf(paragraph);
    std::size_t found = text.find(placeholder);
    if (found == std::string::npos) return;
    RunReplacer replacer(paragraph.runs);
    std::size_t done = 0;
    for (; found != std::string::npos; found = text.find(placeholder, done)) {
        replacer.keep(found - done);
        replacer.replace(placeholder.size(), replacement);
        done = found + placeholder.size();
    }
    replacer.keep(text.size() - done);
    paragraph.runs = replacer.finish();
}

}  // namespace

StyledText StyledText::fromPlainText(std::string_view text) {
    StyledText styled;
    if (text.empty()) return styled;
    for (std::string& line : split(text, '\n')) {
        // Lines may end as in files from other systems.
        if (line.ends_with('\r')) line.pop_back();
        Paragraph paragraph;
        if (!line.empty()) paragraph.runs.push_back({.text = std::move(line)});
        styled.paragraphs.push_back(std::move(paragraph));
    }
    return styled;
}

std::string StyledText::plainText() const {
    std::string text;
    for (const Paragraph& paragraph : paragraphs) {
        if (&paragraph != &paragraphs.front()) text += '\n';
        for (const TextRun& run : paragraph.runs) text += run.text;
    }
    return text;
}

StyledText StyledText::replacingAll(std::string_view placeholder,
                                    std::string_view replacement) const {
    StyledText replaced = *this;
    if (placeholder.empty()) return replaced;
    for (Paragraph& paragraph : replaced.paragraphs) {
        replaceAll(paragraph, placeholder, replacement);
    }
    return replaced;
}

bool StyledText::contains(std::string_view placeholder) const {
    if (placeholder.empty()) return false;
    return std::ranges::any_of(paragraphs, [placeholder](const Paragraph& paragraph) {
        return textOf(paragraph).find(placeholder) != std::string::npos;
    });
}

}  // namespace installer
