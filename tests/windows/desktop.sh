# shellcheck shell=bash
# A desktop for Windows programs: a Wine prefix with fonts, an X display of its own and a window
# manager, from where a script sources this until it ends.

wine_cache=${wine_cache:-$PWD/build/wine}
desktop_pids=()

export WINEPREFIX=$wine_cache/prefix
# What the prefix prints about itself is no business of the tests, and it needs neither .NET nor a
# browser.
export WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='

# Starts the display and its window manager; DISPLAY names it.
start_desktop() {
    local number
    exec {display_number}< <(exec Xvfb -displayfd 1 -screen 0 1280x1000x24 -nolisten tcp 2>/dev/null)
    desktop_pids+=($!)
    read -r -t 20 number <&"$display_number"
    export DISPLAY=:$number
    openbox >/dev/null 2>&1 &
    desktop_pids+=($!)
}

# Makes the prefix unless an earlier run has left a whole one. The locale decides the code page and
# the language of the system's own dialogs. Its name is all that counts for these; file names need in
# addition that it exists, with UTF-8.
prepare_prefix() {
    export LOCPATH=$wine_cache/locale
    mkdir -p "$LOCPATH"
    [ -e "$LOCPATH/ja_JP.UTF-8" ] || cp -r /usr/lib/locale/C.utf8 "$LOCPATH/ja_JP.UTF-8"
    export LC_ALL=ja_JP.UTF-8
    if [ "$wine_cache/ready" -nt tests/windows/prefix.reg ]; then return; fi
    rm -rf "$WINEPREFIX"
    timeout 180 wineboot -i >/dev/null 2>&1
    timeout 60 wine regedit /S tests/windows/prefix.reg >/dev/null 2>&1
    wineserver -k || true
    touch "$wine_cache/ready"
}

# Ends what was started: the prefix's own processes, then the display's by their ids.
end_desktop() {
    wineserver -k 2>/dev/null || true
    kill "${desktop_pids[@]}" 2>/dev/null || true
}

trap end_desktop EXIT
start_desktop
prepare_prefix
