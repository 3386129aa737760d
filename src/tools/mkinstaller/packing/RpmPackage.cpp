#include <string>

#include "foundation/text/Text.h"
#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/packing/Formats.h"
#include "tools/mkinstaller/packing/PackageTexts.h"
#include "tools/mkinstaller/packing/PackageTree.h"
#include "tools/mkinstaller/packing/ToolScript.h"
#include "tools/mkinstaller/sources/SampleNames.h"

namespace installer {

namespace {

/// A percent sign begins a macro.
std::string escapedForSpec(std::string_view text) {
    return replacingAll(text, "%", "%%");
}

// Nothing in the bundle is offered to other packages, and what the window needs is only
// recommended: a quiet installation does without.
constexpr const char* spec = R"(Name: @NAME@
Version: @VERSION@
Release: 1
Summary: Installer of @TITLE@
License: LicenseRef-Proprietary
Group: Applications/Multimedia
Vendor: @COMPANY@
Packager: @MAINTAINER@
URL: @HOMEPAGE@
AutoProv: no
Recommends: (pkexec or polkit or sudo)
Recommends: xdg-utils
@RECOMMENDS@
%global __requires_exclude ^libplist
%global __requires_exclude_from /Contents/(Frameworks|Resources|SharedSupport)/

%description
The package itself installs nothing into the programs that the product
extends: start its installer, or the command
@NAME@.

%install
cp -a %{payload}/. %{buildroot}

%preun
[ "$1" = 0 ] || exit 0@REMOVAL@
%files
%dir @COMPANY_FOLDER@
@FILES@
%changelog
* @DATE@ @MAINTAINER@ - @VERSION@-1
- Version @VERSION@.
)";

std::string filesOf(const PackagePlaces& places) {
    std::string lines;
    for (const std::string& path :
         {places.folder, places.command, places.entry, places.icon, places.action,
          places.manual + ".gz", "%license " + places.notes}) {
        lines += path + "\n";
    }
    return lines;
}

std::string specOf(const PackSource& source, const PackagePlaces& places) {
    return replacingEach(filled(spec, source, places, escapedForSpec),
                         {{"@REMOVAL@", escapedForSpec(removalLines(source, places))},
                          {"@COMPANY_FOLDER@", places.company},
                          {"@FILES@", filesOf(places)}});
}

// $1 the root folder, $2 the time, $3 the work folder, $4 the path of the bundle's Contents in the
// root, $5 the folder for the package, $6 the name of the package.
constexpr const char* rpmLines = R"sh(
export SOURCE_DATE_EPOCH="$2"
LC_ALL=C; export LC_ALL
umask 022
cd "$3"
find "$1" -exec touch --no-dereference --date=@"$2" {} +
printf '%s\n' "$1$4/Frameworks/InstallerWindow.so" | /usr/lib/rpm/rpmdeps --requires |
    sed 's/^/Recommends: /' > recommends
date=$(date --utc --date=@"$2" '+%a %b %d %Y')
sed "s/@DATE@/$date/; /^@RECOMMENDS@/{
r recommends
d
}" package.spec > filled.spec
rpmbuild -bb --quiet --target "$(uname -m)" --define "_topdir $3/top" --define "payload $1" \
    --define "debug_package %{nil}" --define "__os_install_post %{nil}" \
    --define "_build_id_links none" --define "_buildhost localhost" \
    --define "use_source_date_epoch_as_buildtime 1" \
    --define "clamp_mtime_to_source_date_epoch 1" \
    --define "_binary_payload w9.gzdio" filled.spec > /dev/null
for made in top/RPMS/*/*.rpm; do name=${made##*/}; done
cp "$made" "$5/.$6.new"
mv "$5/.$6.new" "$5/$name"
echo "$name" > name
)sh";

}  // namespace

Packed packRpmPackage(const PackSource& source, const std::string& folder) {
    const PackagePlaces places(source);
    const std::string work = source.newWorkFolder("rpm");
    const std::string root = work + "/root";
    Packed packed{places.name + ".rpm", makePackageTree(source, places, root)};
    if (packed.failure) return packed;
    if (const auto error = writeFile(work + "/package.spec", specOf(source, places))) {
        packed.failure = "the description cannot be written: " + error.message();
        return packed;
    }
    packed.failure = runScript({.what = "Packing " + packed.file,
                                .text = rpmLines,
                                .arguments = {root, std::to_string(source.time), work,
                                              places.contents, folder, places.name},
                                .needed = {"rpmbuild", "sed"}});
    if (!packed.failure) packed.file = firstLineOf(work + "/name");
    return packed;
}

}  // namespace installer
