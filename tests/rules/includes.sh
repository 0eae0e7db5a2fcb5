#!/usr/bin/env bash
# An include only goes down a floor: the files of a room include what its CMakeLists.txt links, and what that
# links in turn. So src/ includes nothing of the tests or the stand-in client, and the client nothing of src/.
# The Windows header stays in platform/win32, in controls and in the window files of app.
# usage: includes.sh
set -euo pipefail
cd "$(dirname "$0")/../.."

# "room links", a line for each room: the arrows as the CMakeLists.txt say them.
rooms() {
    find src demo tools -name CMakeLists.txt -exec sed -e 's/#.*//' -e 's/EXCLUDE *"[^"]*"//' {} + | tr '\n' ' ' |
        grep -oE '(quillbox_room|target_link_libraries)\([^)]*\)' | sed -e 's/^[a-z_]*(//' -e 's/)$//'
}

# "file:line:#include …", a line for each include.
includes() {
    git ls-files -z --cached --others --exclude-standard -- {src,demo,tools}/'*.'{cpp,h} |
        xargs -0 grep -sHnE '^[[:space:]]*#[[:space:]]*include' --
}

awk '
    FNR == NR { # not the first room of this name: demo/driver and its program, for one
        name = $1
        $1 = ""
        links[name] = links[name] $0
        next
    }
    {
        split($0, part, ":")
        place = part[1] ":" part[2]
        header = $0
        sub(/^[^<"]*/, "", header)
        room = room_of(part[1])
        if (header ~ windows && part[1] ~ /^src\// && part[1] !~ /^src\/(platform\/win32|controls)\// && room != "quillbox")
            complain(header ", but is no window file")
        if (header ~ /^[<"]platform\/(win32|posix)\// && part[1] ~ /^src\// && part[1] !~ /^src\/platform\// && room != "quillbox")
            complain(header ", but is no part of that system")
        if (header ~ /^<[^>]*\// && room_of(substr(header, 2)) in links)
            complain(header ", which is ours, as if it were the system'"'"'s")
        if (header ~ /^"[^"]*\// && !reaches(room, room_of(substr(header, 2))))
            complain(header ", but " room " does not link " room_of(substr(header, 2)))
    }
    function complain(words) {
        print place ": includes " words
        bad = 1
    }
    # The window files of app make up the program, which links more than the portable app does.
    function room_of(path,   folder) {
        if (path ~ /^src\/app\/(Form1[^\/]*|[^\/]*Win|QuietList)\.(cpp|h)$/) return "quillbox"
        split(path, folder, "/")
        return folder[1] == "tools" ? "quillbox-" folder[2] : folder[1] ~ /^(src|demo)$/ ? folder[2] : folder[1]
    }
    function reaches(from, to,   count, next_room, i) {
        if (from == to || from == "quillbox" && to == "app") return 1
        if (!((from, to) in known)) {
            known[from, to] = 0
            count = split(links[from], next_room, " ")
            for (i = 1; i <= count; i++)
                if (reaches(next_room[i], to)) known[from, to] = 1
        }
        return known[from, to]
    }
    END { exit bad }
' windows='^<(windows|windowsx|commctrl|commdlg|shlobj|shellapi|shlwapi|ole2|oleauto|objbase|uxtheme)\\.h' <(rooms) <(includes)
