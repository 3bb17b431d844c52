# shellcheck shell=bash
# Takes the pictures of the manual while the program is operated; sourced by tests/windows/operate.
# Without its option --pictures, these functions take none.

# save FILE WORDS...: a picture by `import`, in few colours: a small file. The pointer is away from
# what has a tool tip, and nothing tells when all is painted. A run does not wait for that.
save() {
    if [ -z "$pictures" ]; then return; fi
    xdotool mousemove 1270 990
    if [ "$1" != playing ]; then sleep 2; fi
    import "${@:2}" png:- | convert - +dither -colors 64 -strip "png8:docs/images/$1.png"
}

# picture CLASS FILE: of a window of the program with its frame.
picture() {
    focus "$1"
    save "$2" -frame -window "$(xdotool getactivewindow)"
}

# screen GEOMETRY FILE: of a part of the screen.
screen() { save "$2" -window root -crop "$1" +repage; }
