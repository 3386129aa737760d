#include <string>
#include <utility>

#include "foundation/values/Paths.h"
#include "tools/mkinstaller/making/StarterPayload.h"
#include "tools/mkinstaller/packing/Formats.h"
#include "tools/mkinstaller/packing/PackageTexts.h"
#include "tools/mkinstaller/packing/PackageTree.h"
#include "tools/mkinstaller/packing/ToolScript.h"

namespace installer {

namespace {

// The tools find the dependencies, the architecture and the size.
constexpr const char* control = R"(Package: @NAME@
Version: @VERSION@
Architecture: @ARCHITECTURE@
Maintainer: @MAINTAINER@
Installed-Size: @SIZE@
Section: graphics
Priority: optional
Homepage: @HOMEPAGE@
Description: installer of @TITLE@
 The package itself installs nothing into the programs that the product
 extends: start its installer, or the command
 @NAME@.
)";

constexpr const char* changes = R"(@NAME@ (@VERSION@) unstable; urgency=medium

  * Version @VERSION@.

 -- @MAINTAINER@  @DATE@
)";

const std::string beforeRemoval = R"sh(#!/bin/sh
set -e
[ "$1" = remove ] || exit 0
)sh";

constexpr const char* stub = "Source: @NAME@\n\nPackage: @NAME@\nArchitecture: any\n";

// $1 the root folder, $2 the time, $3 the work folder, $4 the path of the bundle's Contents in the
// root, $5 the path of the folder of notes there, $6 the folder for the package, $7 the name of the
// package, $8 its version. The window needs the toolkit; a quiet installation does without.
constexpr const char* debLines = R"sh(
export SOURCE_DATE_EPOCH="$2"
LC_ALL=C; export LC_ALL
# How many work at it shows in what the compression writes.
DPKG_DEB_THREADS_MAX=1; export DPKG_DEB_THREADS_MAX
umask 022
date=$(date --utc --date=@"$2" '+%a, %d %b %Y %H:%M:%S +0000')
sed -i "s/@DATE@/$date/" "$1$5/changelog"
gzip -9 --no-name "$1$5/changelog"
chmod -R u+rwX,go+rX,go-w "$1"
cd "$3"
carried=$(cd "$1$4/Frameworks"; for library in lib*; do
    dpkg-query --search "*/$library" 2> /dev/null || :
done | sed 's/:.*//; s/^/-x/' | sort -u)
dpkg-shlibdeps -O --ignore-missing-info $carried "-l$1$4/Frameworks" "$1$4"/MacOS/* \
    -dRecommends "$1$4/Frameworks/InstallerWindow.so" > needs 2> warnings ||
    { cat warnings >&2; exit 1; }
needed=$(sed -n 's/^shlibs:Depends=//p' needs)
window=$(sed -n 's/^shlibs:Recommends=//p' needs)
size=$(du -k -s --apparent-size "$1" | cut -f 1)
architecture=$(dpkg --print-architecture)
mkdir "$1/DEBIAN"
{ sed "s/@ARCHITECTURE@/$architecture/; s/@SIZE@/$size/; /^Description:/,\$d" control
  echo "Depends: $needed"
  echo "Recommends: ${window:+$window, }pkexec | sudo, xdg-utils"
  sed -n '/^Description:/,$p' control; } > "$1/DEBIAN/control"
cp prerm "$1/DEBIAN/prerm"
chmod 755 "$1/DEBIAN" "$1/DEBIAN/prerm"
(cd "$1" && find usr -type f -print0 | sort -z | xargs -0 md5sum > DEBIAN/md5sums)
chmod 644 "$1/DEBIAN/control" "$1/DEBIAN/md5sums"
dpkg-deb --root-owner-group -Zxz --build "$1" package.deb > /dev/null
cp package.deb "$6/.$7.new"
mv "$6/.$7.new" "$6/$7_$8_$architecture.deb"
echo "$7_$8_$architecture.deb" > name
)sh";

}  // namespace

Packed packDebPackage(const PackSource& source, const std::string& folder) {
    const PackagePlaces places(source);
    const std::string work = source.newWorkFolder("deb");
    const std::string root = work + "/root";
    Packed packed{places.name + ".deb", makePackageTree(source, places, root)};
    if (packed.failure) return packed;
    const auto fill = [&](const char* text) { return filled(text, source, places, unescaped); };
    for (const auto& [path, text] :
         {std::pair(work + "/control", fill(control)),
          std::pair(work + "/prerm", beforeRemoval + removalLines(source, places)),
          std::pair(work + "/debian/control", fill(stub)),
          std::pair(root + places.notes + "/changelog", fill(changes))}) {
        if (const auto error = writeFile(path, text)) {
            packed.failure = path + " cannot be written: " + error.message();
            return packed;
        }
    }
    packed.failure =
        runScript({.what = "Packing " + packed.file,
                   .text = debLines,
                   .arguments = {root, std::to_string(source.time), work, places.contents,
                                 places.notes, folder, places.name, source.version},
                   .needed = {"dpkg-deb", "dpkg-shlibdeps", "gzip", "sed"}});
    if (!packed.failure) packed.file = firstLineOf(work + "/name");
    return packed;
}

}  // namespace installer
