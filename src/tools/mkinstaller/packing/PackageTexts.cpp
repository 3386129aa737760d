#include "tools/mkinstaller/packing/PackageTexts.h"

#include <chrono>
#include <cstdint>

#include "foundation/text/Format.h"
#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "linux/bundle/StringsTable.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/sources/Folders.h"
#include "tools/mkinstaller/sources/Product.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer {

namespace {

constexpr const char* command = R"sh(#!/bin/sh
# @TITLE@: the installer, or with a verb its tool for administrators.
case ${1-} in
    plan | install | verify | remove | status) exec @PROGRAMS@/installerctl "$@" ;;
esac
exec @PROGRAMS@/Installer "$@"
)sh";

constexpr const char* removal = R"sh(
# What the tool for administrators installed and recorded goes with the package.
if [ -x @PROGRAMS@/installerctl ] && [ -e "/Library/Receipts/@IDENTIFIER@.json" ]; then
    status=0
    @PROGRAMS@/installerctl remove || status=$?
    # 3: what somebody has changed stays, and is named; 8: there is nothing to remove.
    case $status in 0 | 3 | 8) ;; *) exit "$status" ;; esac
fi
)sh";

constexpr const char* desktopEntry = R"([Desktop Entry]
Type=Application
Version=1.0
Name=@TITLE@ Installer
Exec=/usr/bin/@NAME@
Icon=@NAME@
Categories=Graphics;Photography;
)";

constexpr const char* polkitAction = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE policyconfig PUBLIC "-//freedesktop//DTD PolicyKit Policy Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/PolicyKit/1.0/policyconfig.dtd">
<policyconfig>
  <vendor>@COMPANY@</vendor>
  <icon_name>@NAME@</icon_name>
  <action id="@ACTION@">
    <description>Install @TITLE@</description>
@MESSAGES@    <defaults>
      <allow_any>auth_admin</allow_any>
      <allow_inactive>auth_admin</allow_inactive>
      <allow_active>auth_admin</allow_active>
    </defaults>
    <annotate key="org.freedesktop.policykit.exec.path">@PROGRAMS@/privileged-helper</annotate>
  </action>
</policyconfig>
)";

constexpr const char* manual = R"(.TH @NAME@ 1
.SH NAME
@NAME@ \- install @TITLE@ into the programs that it extends
.SH SYNOPSIS
.B @NAME@
.RB [ \-quiet ]
.br
.B @NAME@
.RB plan | install | verify | remove | status
.SH DESCRIPTION
Opens the installer's window. With
.B \-quiet
as its first argument it installs without a window and without a question. With a verb it starts
the tool for administrators, which explains itself with
.BR \-\-help .
)";

std::string escapedForRoff(std::string_view text) {
    return replacingAll(replacingAll(text, "\\", "\\e"), "-", "\\-");
}

std::string yearOf(std::int64_t time) {
    const std::chrono::sys_seconds moment{std::chrono::seconds(time)};
    const std::chrono::year_month_day day{std::chrono::floor<std::chrono::days>(moment)};
    return std::to_string(static_cast<int>(day.year()));
}

/// The question in the language of that folder; empty if it has none.
std::string questionIn(const std::string& folder, const PackSource& source) {
    const auto bytes = contentsOf(joinPath(folder, "Localizable.strings"));
    if (!bytes) return {};
    const StringsTable table = parseStringsTable(*bytes);
    const auto found = table.entries.find("authorization_reason");
    if (found == table.entries.end()) return {};
    return formatted(found->second, {source.product, source.company});
}

std::string messageIn(const std::string& language, const std::string& text) {
    const std::string attribute = language.empty() ? "" : " xml:lang=\"" + language + "\"";
    return "    <message" + attribute + ">" + escapedForXml(text) + "</message>\n";
}

/// polkit asks in English if it does not know the user's language.
std::string messages(const PackSource& source) {
    const auto bundle = Product::at(source.bundle());
    std::string plain = source.title() + " needs administrator rights to install its files.";
    if (!bundle) return messageIn("", plain);
    std::string translated;
    for (const std::string& language : bundle->languages()) {
        const std::string text = questionIn(bundle->languageFolder(language), source);
        if (text.empty()) continue;
        if (language == "en") {
            plain = text;
        } else {
            translated += messageIn(language, text);
        }
    }
    return messageIn("", plain) + translated;
}

}  // namespace

std::string filled(std::string_view text, const PackSource& source, const PackagePlaces& places,
                   const Escape& escape) {
    return replacingEach(text, {{"@NAME@", escape(places.name)},
                                {"@TITLE@", escape(source.title())},
                                {"@COMPANY@", escape(source.company)},
                                {"@IDENTIFIER@", source.identifier},
                                {"@VERSION@", source.version},
                                {"@MAINTAINER@", escape(source.maintainer)},
                                {"@HOMEPAGE@", source.homepage()},
                                {"@PROGRAMS@", places.programs()}});
}

std::string unescaped(std::string_view text) {
    return std::string(text);
}

std::string commandText(const PackSource& source, const PackagePlaces& places) {
    return filled(command, source, places, unescaped);
}

std::string removalLines(const PackSource& source, const PackagePlaces& places) {
    return filled(removal, source, places, unescaped);
}

std::string desktopEntryOf(const PackSource& source, const PackagePlaces& places) {
    return filled(desktopEntry, source, places,
                  [](std::string_view text) { return replacingAll(text, "\\", "\\\\"); });
}

std::string polkitActionOf(const PackSource& source, const PackagePlaces& places) {
    const std::string text = filled(polkitAction, source, places, escapedForXml);
    return replacingEach(text, {{"@ACTION@", places.actionName}, {"@MESSAGES@", messages(source)}});
}

std::string manualOf(const PackSource& source, const PackagePlaces& places) {
    return filled(manual, source, places, escapedForRoff);
}

std::string copyrightOf(const PackSource& source) {
    const std::string licence =
        contentsOf(joinPath(source.bundle(), "Contents/Resources/en.lproj/license.txt"))
            .value_or("");
    return source.title() + "\n\nCopyright (C) " + yearOf(source.time) + " " + source.company +
           "\n\n" + licence + (licence.ends_with('\n') ? "" : "\n");
}

}  // namespace installer
