#!/bin/sh
{ # sum=@SUM@
# shellcheck disable=SC2317  # traps call the functions
#
# The installer of @TITLE@ in one file: these lines, then the compressed installer.
# Start it as it is for a window, or in a terminal with the installer's arguments, such as -quiet.

self=$0
case $self in /*) ;; *) self=./$self ;; esac
name=${self##*/}

tell() {
    printf '%s\n' "$1" >&2
    # Started by a double click there is no terminal on which somebody could read it.
    if [ -t 2 ] || [ -z "${DISPLAY-}${WAYLAND_DISPLAY-}" ]; then return; fi
    if command -v kdialog; then kdialog --error "$1"
    elif command -v zenity; then zenity --error --no-markup --text="$1"
    elif command -v xmessage; then xmessage "$1"
    elif command -v notify-send; then notify-send -- "$1"
    fi > /dev/null 2>&1
}

for tool in @PROGRAM@ head mktemp rm sha256sum tail tar; do
    command -v "$tool" > /dev/null || { tell "$name needs the program \"$tool\"."; exit 1; }
done
# Everything but the line with the sum is checked, and before the shell reads any further. That line
# is a comment, so that the shell can read it whatever it holds.
found=$({ head -n 1 "$self" && tail -n +3 "$self"; } | sha256sum)
if [ "$(head -n 2 "$self" | tail -n 1)" != "{ # sum=${found%% *}" ]; then
    tell "$name is damaged or incomplete; please download it again."
    exit 1
fi
}
{
folder='' child=''
leave() {
    trap '' HUP INT TERM
    if [ -n "$child" ]; then kill "$child" && wait "$child"; fi 2> /dev/null
    [ -z "$folder" ] || rm -rf "$folder"
    trap - EXIT
    exit "$1"
}
trap 'leave $?' EXIT
trap 'leave 129' HUP
trap 'leave 130' INT
trap 'leave 143' TERM

# unpack FOLDER: into a private folder in it, if programs may be started there and there is room.
unpack() {
    folder=$(mktemp -d "$1/installer.XXXXXXXX") || { folder=''; return 1; }
    printf '#!/bin/sh\n' > "$folder/try" && chmod 700 "$folder/try" && "$folder/try" &&
        rm "$folder/try" &&
        tail -n +@LINES@ "$self" | @PROGRAM@ -dc | tar -xpof - -C "$folder" && return
    rm -rf "$folder"
    folder=''
    return 1
} 2> /dev/null
unpack "${TMPDIR:-/tmp}" || unpack /var/tmp || unpack "${XDG_CACHE_HOME:-${HOME:-/root}/.cache}" ||
    unpack /dev/shm || {
    tell "$name finds no folder with enough room from which programs may be started. Name one in TMPDIR."
    exit 1
}

for programs in "$folder"/*.app/Contents/MacOS; do break; done
program=$programs/Installer
case ${1-} in
    plan | install | verify | remove | status)
        program=$programs/installerctl
        [ -x "$program" ] || { tell "$name has no program for \"$1\"."; exit 2; } ;;
esac
# In the background a signal is not kept waiting for its end; the shell would take its input away.
if (: 3<&0) 2> /dev/null; then exec 3<&0; else exec 3< /dev/null; fi
"$program" "$@" <&3 3<&- &
child=$!
exec 3<&-
wait "$child"
status=$?
child=''
exit "$status"
}
