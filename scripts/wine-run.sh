#!/usr/bin/env bash
# Runs a command in a 32-bit Wine of its own: fresh prefix, server, virtual display, one processor core.
#
# usage: wine-run.sh [options] [--] command [arguments]
#   -t SECONDS    time limit (default 600, 0 for none); beyond it the exit code is 124
#   -l gb|us      date format of the Windows user: 03/04/2007 10:15 (default) or 4/3/2007 10:15 AM
#   -a LOCALE     the user's language, and with it the ANSI code page: ja_JP (default: English, 1252)
#   -n            no display: windows exist but are not drawn
#   -d            the display that DISPLAY names, instead of a virtual one
#   -s WxH        size of the virtual screen (default 1280x1024)
#   -r DPI        resolution that programs are told, and with it the size of the system's fonts (default 96)
#   -c FILE.png   picture of the screen when the command has ended
#   -p DIR        prefix to use and keep, made when missing
#
# The exit code is the command's. Every Wine program that the command starts shares the prefix, so one call
# can hold a whole test run. Calls may run side by side. When the command ends, or INT, TERM or HUP arrives,
# all that was started here is ended, and the scratch files go.
set -u

limit=600 dates=gb display=virtual screen=1280x1024 dpi=96 picture="" keep="" language=""
usage() { sed -n '2,/^set/s/^# \{0,1\}//p' "$0" >&2; exit 2; }
die() { echo "wine-run: $*" >&2; exit 1; }
while getopts t:l:a:nds:r:c:p: option; do
    case $option in
        t) limit=$OPTARG ;;
        l) dates=$OPTARG ;;
        a) language=$OPTARG ;;
        n) display=none ;;
        d) display=${DISPLAY:-}; [ -n "$display" ] || die "-d, but DISPLAY is not set" ;;
        s) screen=$OPTARG ;;
        r) [[ $OPTARG =~ ^[1-9][0-9]{1,2}$ ]] || die "-r takes dots per inch"; dpi=$OPTARG ;;
        c) picture=$OPTARG ;;
        p) keep=$(realpath -m -- "$OPTARG") ;;
        *) usage ;;
    esac
done
shift $((OPTIND - 1))
[ $# -gt 0 ] || usage
case $dates in
    gb) date_settings='"iDate"="1" "iTime"="1" "sShortDate"="dd/MM/yyyy" "sShortTime"="HH:mm" "sTimeFormat"="HH:mm:ss"' ;;
    us) date_settings='"iDate"="0" "iTime"="0" "sShortDate"="M/d/yyyy" "sShortTime"="h:mm tt" "sTimeFormat"="h:mm:ss tt"' ;;
    *) die "-l takes gb or us" ;;
esac
command -v wine >/dev/null || die "wine is not installed (scripts/install-tools.sh installs it)"

root=$(cd "$(dirname "$0")/.." && pwd) || exit 1
scratch=$(mktemp -d "${TMPDIR:-/tmp}/wine-run.XXXXXX") || exit 1
group=""   # the process group of what runs now
screens="" # and of the virtual display
servers=()  # prefixes whose server may be running

# Debian's Wine puts each server's socket into a directory of /tmp and notes its name in the prefix.
forget_socket() {
    local name
    name=$(cat "$1/wineserver" 2>/dev/null) || return 0
    [[ $name == wine-?????? ]] && rm -rf "/tmp/$name"
    rm -f "$1/wineserver"
}

stop_server() { # ends the programs of this prefix, and no others
    WINEPREFIX=$1 timeout 10 wineserver -k
    WINEPREFIX=$1 timeout 20 wineserver -w
    forget_socket "$1"
}

end_group() { [ -z "$1" ] || kill -TERM -- "-$1" 2>/dev/null; }

# shellcheck disable=SC2317 # called by the trap
finish() {
    local status=$? prefix
    trap '' INT TERM HUP
    end_group "$group"
    for prefix in "${servers[@]}"; do stop_server "$prefix" 2>/dev/null; done
    end_group "$screens" # last: Wine's programs do not end well without their display
    wait
    rm -rf "$scratch"
    exit "$status"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# In the background (a trap waits for a foreground program to end, but not for `wait`), in a process group of
# its own, and told to end even when this script is killed outright.
run() {
    local status
    setsid setpriv --pdeathsig TERM -- "$@" &
    group=$!
    wait "$group"
    status=$?
    end_group "$group" # what the program left running
    group=""
    return "$status"
}

start_display() {
    local number=""
    mkfifo "$scratch/display"
    setsid setpriv --pdeathsig TERM -- Xvfb -displayfd 3 -screen 0 "${screen}x24" -nolisten tcp -noreset \
        3<>"$scratch/display" >"$scratch/display.log" 2>&1 </dev/null &
    screens=$!
    read -r -t 30 number <>"$scratch/display" || { cat "$scratch/display.log" >&2; die "no virtual display"; }
    export DISPLAY=:$number
}

# A prefix takes half a minute and half a gigabyte to make. One is made for each version of Wine, its
# libraries replaced by links to the installed ones: what is left copies in no time.
make_template() {
    local new=$scratch/template libraries file
    servers+=("$new")
    WINEPREFIX=$new run timeout 300 wineboot -i >"$scratch/template.log" 2>&1 </dev/null ||
        { cat "$scratch/template.log" >&2; return 1; }
    stop_server "$new"
    [ -e "$new/system.reg" ] || { cat "$scratch/template.log" >&2; return 1; }
    libraries=$(find /usr/lib /usr/local/lib /opt -type d -path '*/wine/i386-windows' -print -quit 2>/dev/null)
    if [ -n "$libraries" ]; then
        find "$new/drive_c" -type f -print0 | while IFS= read -r -d '' file; do
            if cmp -s "$file" "$libraries/${file##*/}"; then ln -sf "$libraries/${file##*/}" "$file"; fi
        done
    fi
    # "My Documents" and its neighbours lead to the real home directory: make them plain folders.
    find "$new/drive_c/users" -type l -print0 | while IFS= read -r -d '' file; do
        rm "$file" && mkdir "$file"
    done
    rm -rf "$template.new" && cp -dR --preserve=mode,timestamps "$new" "$template.new" &&
        mv -T "$template.new" "$template"
}

use_template() {
    mkdir -p "${template%/*}" || return 1
    exec 9>"$template.lock"
    while ! flock -w 1 9; do :; done # in steps, so that a signal gets through
    if [ ! -e "$template/system.reg" ]; then make_template 9>&- || return 1; fi
    exec 9>&-
    mkdir -p "$WINEPREFIX" && cp -dR --preserve=mode,timestamps "$template/." "$WINEPREFIX/"
}

case $display in
    virtual) unset DISPLAY XAUTHORITY; start_display ;;
    none) unset DISPLAY XAUTHORITY ;;
esac

# A locale that the C library does not know makes Wine refuse file names beyond ASCII.
unset LANG LANGUAGE WAYLAND_DISPLAY
export LC_ALL=C.UTF-8 TZ=${TZ:-Europe/London}
export WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
if [ -n "$language" ]; then
    export LOCPATH=$scratch/locale LC_ALL=$language.UTF-8
    mkdir "$LOCPATH"
    localedef -i "$language" -f UTF-8 --no-archive "$LOCPATH/$LC_ALL" || die "-a $language: no such locale"
fi
# No menus written to the host, no offers to download .NET or an HTML engine.
export WINEDLLOVERRIDES="winemenubuilder.exe=;mscoree=;mshtml="
export WINEPREFIX=${keep:-$scratch/prefix}

template=$root/build/wine/$(wine --version | tr -c 'A-Za-z0-9.\n' _)
[ -e "$WINEPREFIX/system.reg" ] || use_template || die "no Wine prefix could be made"

# Debian's Wine does not search the folder in which fonts-wine puts Tahoma and Marlett.
find /usr/share/wine/fonts -name '*.ttf' -exec ln -sf -t "$WINEPREFIX/drive_c/windows/Fonts" {} + 2>/dev/null
# Without Managed=N every closing dialog waits two seconds for a window manager; without
# ShowCrashDialog=0 a crash waits for a click.
graphics=x11
[ "$display" = none ] && graphics=null
{
    printf '\n[Control Panel\\\\International]\n%s\n' "${date_settings//\" \"/\"$'\n'\"}"
    printf '\n[Control Panel\\\\Desktop]\n"LogPixels"=dword:%08x\n' "$dpi"
    printf '\n[Software\\\\Wine\\\\Drivers]\n"Graphics"="%s"\n' "$graphics"
    printf '\n[Software\\\\Wine\\\\X11 Driver]\n"Managed"="N"\n'
    printf '\n[Software\\\\Wine\\\\WineDbg]\n"ShowCrashDialog"=dword:00000000\n'
} >>"$WINEPREFIX/user.reg"

# Programs that talk to each other through the server take turns; spread over cores they take twice as long.
read -r -a cores < <(taskset -cp $$ | sed 's/.*: //; s/,/ /g')
core=${cores[RANDOM % ${#cores[@]}]}
taskset -cp "${core%%-*}" $$ >/dev/null 2>&1

# One server for all programs of the command. Wine's services come with its first program and inherit its
# output: started here they have none, and whoever captures the command's output does not wait for them.
servers+=("$WINEPREFIX")
wineserver -p60
run timeout 120 wine cmd /c exit >/dev/null 2>&1 </dev/null || die "Wine does not start"

run timeout -k 10 "$limit" "$@"
status=$?
[ -z "$picture" ] || [ "$display" = none ] || run timeout 30 import -window root "$picture"
exit "$status"
