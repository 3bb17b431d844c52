# shellcheck shell=bash
# Mouse, keyboard and eyes of the scripts beside this file. Nothing waits for a time: what is to come
# is looked for until it is there.
. tests/windows/desktop.sh

start_hands() {
    start_desktop
    prepare_prefix
    coproc drive { exec wine build/mingw/tests/windows/drive.exe; }
    # The shell keeps a coprocess' own files from subshells.
    exec {question}>&"${drive[1]}" {answer}<&"${drive[0]}"
}

# see WORDS...: prints what drive.cpp answers; fails when there is no such thing.
see() {
    local IFS=$'\t' line
    printf '%s\n' "$*" >&"$question"
    while IFS= read -r -t 120 line <&"$answer"; do
        case ${line%$'\r'} in
            .) return 0 ;;
            '?') return 1 ;;
            *) printf '%s\n' "${line%$'\r'}" ;;
        esac
    done
    return 1
}

# reaches PATTERN COMMAND...: waits until the command prints what matches, for at most
# `patience` seconds; `got` is what it printed.
reaches() {
    local end=$((SECONDS + ${patience:-100}))
    while got=$("${@:2}") || true; do
        # shellcheck disable=SC2053
        if [[ $got == $1 ]]; then return 0; fi
        if [ $SECONDS -ge $end ]; then return 1; fi
        sleep 0.05
    done
}

key() { xdotool key "$@"; }
type() { xdotool type --delay 5 "$1"; }

# click BUTTON WORDS...: a click on the point that `see` prints for the words.
click() {
    local x y
    read -r x y < <(see "${@:2}")
    xdotool mousemove "$x" "$y" click "$1"
}

active_title() { xdotool getactivewindow getwindowname 2>/dev/null; }

# front PATTERN [TITLE]: brings the window whose title matches to the front, once it is there. Of a
# window of the program Wine must say so, too: then its keys come to that window.
front() {
    local window round name=${1//\*/}
    if [ $# = 2 ]; then name="^$name\$"; fi
    for round in {1..1000}; do
        # shellcheck disable=SC2053
        if [[ $(active_title) == $1 && ($# = 1 || $(see active) == "$2") ]]; then return 0; fi
        if [ $((round % 5)) = 0 ] || [ $# = 1 ]; then
            # The search fails when a window goes while it looks.
            window=$(xdotool search --onlyvisible --name "$name" 2>/dev/null | tail -1) || true
            if [ -n "$window" ]; then xdotool windowactivate "$window" 2>/dev/null || true; fi
        fi
        sleep 0.1
    done
    return 1
}

# focus CLASS: brings that window of the program to the front.
focus() {
    local title
    title=$(see title "$1")
    front "$title" "$title"
}

# dialog KEYS CLASS: opens a window of the program by keys.
dialog() {
    # shellcheck disable=SC2086
    key $1
    focus "$2"
}

# file KEYS NAME: opens a file dialog by keys and gives it a name, the proposed one when that is empty.
file() {
    dialog "$1" '#32770'
    if [ -n "$2" ]; then type "$2"; fi
    key Return
}

# Starts the program and waits until it can be used.
start() {
    wine "$program/tamrin.exe" &
    run=$!
    focus frmIeAuto
    see gone frmSplash
}

# browse ADDRESS TITLE: opens the recording's browser and leads it to a page. The program follows the
# page while the browser is in front.
browse() {
    key ctrl+b
    front 'about:blank*'
    # A window that has just come may lose keys.
    for _ in {1..9}; do
        key ctrl+l
        type "$1"
        key Return
        if patience=10 reaches "*$2*" active_title; then break; fi
    done
    reaches "$1" see text frmIeAuto Edit 0
}

# Ends the browser of a run, which Wine cannot.
end_browser() { kill "$(cat "$BROWSER_PID_FILE")"; }
