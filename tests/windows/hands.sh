# shellcheck shell=bash
# Mouse, keyboard and eyes of `operate`. Nothing waits for a time: what is to come is looked for
# until it is there.
. tests/windows/desktop.sh

# A browser of Linux takes no pipe from a program under Wine.
export TAMRIN_DEBUGGING_PORT=1

# see WORDS...: prints what drive.cpp answers; fails when there is no such thing.
see() { wine build/mingw/tests/windows/drive.exe "$@" | tr -d '\r'; }

# soon COMMAND...: waits until the command succeeds, for at most `patience` seconds.
soon() {
    local end=$((SECONDS + ${patience:-100}))
    until "$@"; do
        if [ $SECONDS -ge $end ]; then return 1; fi
        sleep 0.05
    done
}

# matches PATTERN COMMAND...: whether the command prints what matches; `got` is what it printed.
matches() {
    got=$("${@:2}")
    # shellcheck disable=SC2053
    [[ $got == $1 ]]
}

# raise CLASS: brings a window of the program to the front. Wine must say so, too: then its keys come
# to that window.
raise() {
    local window front
    { read -r window && read -r front; } < <(see window "$1")
    xdotool windowactivate --sync "$window" 2>/dev/null && [ "$window" = "$front" ]
}
focus() { soon raise "$1"; }

# front TITLE: brings the browser's window with that title to the front.
raise_browser() {
    xdotool search --onlyvisible --name "$1" windowactivate --sync 2>/dev/null
    matches "*$1*" xdotool getactivewindow getwindowname
}
front() { soon raise_browser "$1"; }

key() { xdotool key "$@"; }
type() { xdotool type --delay 5 "$1"; }

# press KEYS...: in the main window.
press() {
    focus frmIeAuto
    key "$@"
}

# click BUTTON CLASS WORDS...: a click on the point of that window that `see` prints for the words.
click() {
    focus "$2"
    soon matches '* *' see point "${@:2}"
    # shellcheck disable=SC2086
    xdotool mousemove $got click "$1"
}

# dialog KEYS CLASS [FILE]: opens a window of the program by keys, and takes a picture of it.
dialog() {
    # shellcheck disable=SC2086
    press $1
    focus "$2"
    if [ $# = 3 ]; then picture "$2" "$3"; fi
}

# file KEYS NAME: opens a file dialog by keys and gives it a name, the proposed one when that is empty.
file() {
    dialog "$1" '#32770'
    if [ -n "$2" ]; then type "$2"; fi
    key Return
}

# starts PROGRAM ARGUMENTS...
starts() {
    timeout 200 wine "$@" &
    run=$!
}

# Starts the program and waits until it can be used.
start() {
    starts "$program/tamrin.exe"
    focus frmIeAuto
    soon see gone frmSplash
}

# Ends the browser of a run, which Wine cannot.
end_browser() { kill "$(cat "$BROWSER_PID_FILE")"; }
