#include "tools/mkinstaller/packing/Toolkit.h"

#include "tools/mkinstaller/packing/ToolScript.h"

namespace installer {

namespace {

// $1 the bundle's Contents.
constexpr const char* toolkitLines = R"sh(
cd "$1/Frameworks"
core=$(ldd InstallerWindow.so | sed -n 's/.* => \(.*libQt6Core[^ ]*\) .*/\1/p')
font=$(fc-match --format='%{file}' sans)
[ -n "$core" ] && [ -f "$font" ] || { echo "There is no Qt 6, or no font, on this machine." >&2; exit 1; }
plugins=${core%/*}/qt6/plugins
mkdir -p plugins/platforms plugins/imageformats fonts licences
cp "$plugins/platforms/libqxcb.so" plugins/platforms
cp "$plugins/imageformats/libqtiff.so" plugins/imageformats
cp "$font" fonts
cat > fonts/fonts.conf << 'END'
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir prefix="relative">.</dir>
  <cachedir prefix="xdg">fontconfig</cachedir>
</fontconfig>
END
printf '[Paths]\nPrefix = ../Frameworks\nPlugins = plugins\n' > ../MacOS/qt.conf

# The C library is the system's own: another one could not be loaded beside it.
ldd InstallerWindow.so plugins/*/*.so | sed -n 's/.* => \(\/.*\) (0x.*/\1/p' | sort -u |
    grep -Ev '/(libc|libm|libdl|libpthread|librt|libresolv)\.so' > libraries
while read -r library; do
    [ -e "${library##*/}" ] || cp "$library" .
done < libraries
{ cat libraries; echo "$font"; } | while read -r file; do
    dpkg-query --search "*/${file##*/}" 2> /dev/null | head -n 1 | sed 's/:.*//' ||
        rpm --query --file --queryformat '%{NAME}\n' "$file" || :
done | sort -u | while read -r package; do
    for licence in "/usr/share/doc/$package/copyright" "/usr/share/licenses/$package"/*; do
        [ -f "$licence" ] && cp -L "$licence" "licences/$package" || :
    done
done
rm libraries
chmod -R u+rw,go-w,a+rX .
chmod 644 ./*.so* plugins/*/*.so
)sh";

}  // namespace

std::optional<std::string> addToolkit(const std::string& bundle) {
    return runScript({.what = "Adding the toolkit",
                      .text = toolkitLines,
                      .arguments = {bundle + "/Contents"},
                      .needed = {"ldd", "fc-match", "sed"}});
}

}  // namespace installer
