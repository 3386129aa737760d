#include "tools/mkinstaller/lint/window/LoadLayouts.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/display/WindowModuleLoader.h"
#include "linux/files/LinuxFileManager.h"
#include "ports/SystemLog.h"
#include "ports/window/InterfaceLoader.h"
#include "ports/window/WindowModule.h"
#include "tools/mkinstaller/lint/window/LayoutFile.h"
#include "tools/mkinstaller/sources/Folders.h"

namespace installer {

namespace {

/// What the window module says goes to whoever listens at the moment.
class Listener final : public SystemLog {
  public:
    void log(std::string_view line) override { lines.emplace_back(line); }

    std::vector<std::string> lines;
};

std::string inQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

/// The module names a widget and its property: where the layout has them.
const LayoutFile::Property* propertyNamedIn(const std::string& complaint,
                                            const LayoutFile& layout) {
    for (const LayoutFile::Widget& widget : layout.widgets) {
        if (!contains(complaint, inQuotes(widget.name))) continue;
        for (const LayoutFile::Property& property : widget.properties) {
            if (contains(complaint, inQuotes(property.name))) return &property;
        }
    }
    return nullptr;
}

/// The line of a class that the loader does not know.
std::size_t lineOfClassIn(const std::string& complaint, const LayoutFile& layout) {
    for (const LayoutFile::Widget& widget : layout.widgets) {
        if (contains(complaint, " " + widget.type + ".")) return widget.line;
    }
    return 1;
}

void load(const LintContext& context, const OwnLayout& own, InterfaceLoader& loader,
          InterfaceOwner& owner, Listener& listener) {
    const LayoutFile layout = LayoutFile::parse(contentsOf(own.file).value_or(""));
    if (layout.error) return;  // told already
    listener.lines.clear();
    const std::unique_ptr<Interface> interface = loader.load(own.description, owner);
    for (const std::string& complaint : listener.lines) {
        if (const auto* property = propertyNamedIn(complaint, layout)) {
            context.findings.add("M058", {own.file, property->line},
                                 "\"" + property->name + "\" does not fit this widget",
                                 "remove it, or use another kind of widget");
        }
    }
    if (interface || listener.lines.empty()) return;
    // The loader's last word is its reason; the lines before it are the toolkit's own.
    std::string reason = listener.lines.back();
    if (reason.ends_with('.')) reason.pop_back();
    context.findings.add("M057", {own.file, lineOfClassIn(reason + ".", layout)}, reason,
                         "correct it with Qt Designer");
}

}  // namespace

void loadLayouts(const LintContext& context, const std::vector<OwnLayout>& layouts,
                 ProductBundle& bundle, WindowNames& names, SystemLog& notes) {
    if (layouts.empty()) return;
    // A maker's checks run without a display as well, and must not open a window on one.
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    Listener listener;
    LinuxFileManager files(listener, LinkPolicy::follow);
    const std::string kit = std::filesystem::absolute(context.kit.bundle()).string();
    const auto module =
        loadWindowModule(kit, {.executablePath = joinPath(kit, "Contents/MacOS/Installer"),
                               .bundle = bundle,
                               .files = files,
                               .log = listener,
                               .openLink = [](const std::string& /*address*/) {}});
    if (!module) {
        notes.log(
            "The layouts were not loaded as the window does, only read: " +
            (listener.lines.empty() ? std::string("no window module") : listener.lines.front()));
        return;
    }
    for (const OwnLayout& own : layouts) {
        bundle.showOnly(std::filesystem::absolute(own.file).string());
        load(context, own, module->interfaces(), names.owner(own.description), listener);
    }
    bundle.showOnly(std::nullopt);
}

}  // namespace installer
