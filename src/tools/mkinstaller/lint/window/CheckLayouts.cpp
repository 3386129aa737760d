#include "tools/mkinstaller/lint/window/CheckLayouts.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "ports/window/DescriptionProperties.h"
#include "tools/mkinstaller/lint/window/LayoutFile.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

/// The known name that most likely was meant: most of its beginning and end are the same.
std::string meant(std::string_view name) {
    std::string best;
    std::size_t most = name.size() / 2;
    const auto consider = [&](std::string_view known) {
        const auto start = std::ranges::mismatch(name, known).in1 - name.begin();
        const std::string_view rest = name.substr(static_cast<std::size_t>(start));
        std::size_t end = 0;
        while (end < rest.size() && end < known.size() &&
               rest[rest.size() - 1 - end] == known[known.size() - 1 - end]) {
            ++end;
        }
        const std::size_t same = static_cast<std::size_t>(start) + end;
        if (same <= most) return;
        most = same;
        best = known;
    };
    for (const char* known : bindingProperties) consider(known);
    for (const char* known : otherDescriptionProperties) consider(known);
    return best;
}

class LayoutCheck {
  public:
    LayoutCheck(const LintContext& context, const OwnLayout& own, const TextTables& tables,
                const DescriptionNames& names)
        : context_(context),
          file_(own.file),
          tables_(tables),
          names_(names),
          layout_(LayoutFile::parse(contentsOf(own.file).value_or(""))) {}

    void check() {
        if (layout_.error) {
            tell("M050", layout_.error->line,
                 "the layout is not well-formed: " + layout_.error->message,
                 "save it anew with Qt Designer");
            return;
        }
        std::set<std::string> seen;
        for (const LayoutFile::Widget& widget : layout_.widgets) {
            if (!widget.name.empty() && !seen.insert(widget.name).second) {
                tell("M060", widget.line, "another widget is called \"" + widget.name + "\" too",
                     "rename one of them");
            }
            for (const LayoutFile::Property& property : widget.properties) {
                checkProperty(property);
            }
        }
        checkWidgets();
        checkPictures();
    }

  private:
    void tell(std::string_view code, std::size_t line, std::string problem, std::string repair) {
        context_.findings.add(code, {file_, line}, std::move(problem), std::move(repair));
    }

    void checkProperty(const LayoutFile::Property& property) {
        if (!isDescriptionProperty(property.name)) {
            if (property.isDynamic) tellUnknown(property);
        } else if (isBindingProperty(property.name)) {
            if (names_.hasProperty(property.value)) return;
            tell("M054", property.valueLine,
                 "the installer has no property \"" + property.value + "\" for this window",
                 "correct its spelling");
        } else if (property.name == actionProperty) {
            if (names_.hasAction(property.value)) return;
            tell("M052", property.valueLine,
                 "the installer has no action \"" + property.value + "\" for this window",
                 "correct its spelling");
        } else if (isTextKeyProperty(property.name)) {
            checkText(property);
        }
    }

    void tellUnknown(const LayoutFile::Property& property) {
        const std::string known = meant(property.name);
        tell("M051", property.line,
             "\"" + property.name + "\" is no property that the window knows",
             known.empty() ? "remove it" : "write " + known);
    }

    void checkText(const LayoutFile::Property& property) {
        for (const std::string& language : tables_.languages()) {
            const TextTable& table = tables_.table(language, "Localizable");
            if (!table.read || table.text(property.value) != nullptr) continue;
            tell("M053", property.valueLine,
                 "there is no text \"" + property.value + "\" in " + language,
                 "add it to Localizable.strings in each language");
            return;
        }
    }

    void checkWidgets() {
        for (const std::string& name : names_.neededWidgets) {
            if (layout_.widget(name) != nullptr) continue;
            tell("M055", 1, "no widget is called \"" + name + "\", so the window cannot be used",
                 "call the widget by that name");
        }
        for (const std::string& name : names_.usedWidgets) {
            if (layout_.widget(name) != nullptr || names_.neededWidgets.contains(name)) continue;
            tell("M056", 1,
                 "no widget is called \"" + name + "\", so what belongs there is not shown",
                 "call the widget by that name");
        }
    }

    void checkPictures() {
        for (const LayoutFile::Picture& picture : layout_.pictures) {
            if (isFile(joinPath(parentPath(file_), picture.file))) continue;
            tell("M059", picture.line,
                 "there is no picture \"" + picture.file + "\" beside the layout",
                 "put it there, or correct its name");
        }
    }

    const LintContext& context_;
    std::string file_;
    const TextTables& tables_;
    const DescriptionNames& names_;
    LayoutFile layout_;
};

}  // namespace

std::vector<OwnLayout> ownLayouts(const Product& product, const Kit& kit) {
    std::vector<OwnLayout> layouts;
    std::vector<std::string> folders = {product.resources};
    for (const std::string& language : product.languages()) {
        folders.push_back(product.languageFolder(language));
    }
    for (const std::string& name : sortedNames(kit.resources())) {
        if (suffixOf(name) != "ui") continue;
        const auto kitLayout = contentsOf(joinPath(kit.resources(), name));
        for (const std::string& folder : folders) {
            const std::string file = joinPath(folder, name);
            if (entryType(file) == EntryType::missing || contentsOf(file) == kitLayout) continue;
            layouts.push_back({file, stemOf(name)});
        }
    }
    return layouts;
}

std::vector<OwnLayout> kitLayouts(const Kit& kit) {
    std::vector<OwnLayout> layouts;
    for (const std::string& name : sortedNames(kit.resources())) {
        if (suffixOf(name) == "ui") {
            layouts.push_back({joinPath(kit.resources(), name), stemOf(name)});
        }
    }
    return layouts;
}

LayoutNeeds needsOf(const std::vector<OwnLayout>& layouts) {
    LayoutNeeds needs;
    for (const OwnLayout& own : layouts) {
        const LayoutFile layout = LayoutFile::parse(contentsOf(own.file).value_or(""));
        for (const LayoutFile::Picture& picture : layout.pictures) {
            needs.pictures.insert(picture.file);
        }
        for (const LayoutFile::Widget& widget : layout.widgets) {
            for (const LayoutFile::Property& property : widget.properties) {
                if (isTextKeyProperty(property.name)) needs.textKeys.insert(property.value);
                if (property.name != pictureNameProperty) continue;
                // In a dark window the second one is shown.
                needs.pictures.insert(property.value + ".png");
                needs.pictures.insert(property.value + "-Dark.png");
            }
        }
    }
    return needs;
}

void checkLayouts(const LintContext& context, const std::vector<OwnLayout>& layouts,
                  const TextTables& tables, const WindowNames& names) {
    for (const OwnLayout& own : layouts) {
        const DescriptionNames* known = names.of(own.description);
        if (known != nullptr) LayoutCheck(context, own, tables, *known).check();
    }
}

}  // namespace installer
