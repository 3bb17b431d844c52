# shellcheck shell=bash
# The one list of the Debian packages that the scripts need, and the function that installs those
# that are missing. Written for a bare Debian 12 or 13; sourced by ./run, ./test, ./release and
# bench/run.

# To build the console program and the sample site, and to play a scenario in a browser. Without a
# Japanese font the pages are drawn with empty boxes.
RUN_PACKAGES=(
    g++ cmake ninja-build
    libboost-dev nlohmann-json3-dev libgtest-dev
    chromium chromium-sandbox fonts-noto-cjk
)

# To build the Windows program, its manual as a page, and the zip that holds them. googletest is the
# source of its test programs.
RELEASE_PACKAGES=(
    g++-mingw-w64-x86-64-posix cmake ninja-build
    libboost-dev nlohmann-json3-dev googletest
    cmark-gfm zip
)

# For the tests and the checks besides. The version of clang's tools is fixed, for each formats a
# little differently and checks for a little more. The Windows program runs under Wine on a display
# of its own, where xdotool is the user's hand and imagemagick takes the pictures.
# shellcheck disable=SC2034  # used by the scripts that source this file
TEST_PACKAGES=(
    "${RUN_PACKAGES[@]}" "${RELEASE_PACKAGES[@]}"
    clang-format-19 clang-tidy-19 unzip
    wine wine64 curl xvfb openbox xdotool x11-utils imagemagick
)

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Runs a command with the rights to install packages.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# install_packages NAME...: installs those that are missing, and fails when it cannot.
install_packages() {
    local package missing=()
    if ! command -v apt-get >/dev/null; then
        echo "This is not a Debian system; install by hand what is missing of: $*" >&2
        return 0
    fi
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    echo "Installing: ${missing[*]}"
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        echo "That needs root or sudo. As root: apt-get install ${missing[*]}" >&2
        return 1
    fi
    as_root apt-get update -q &&
        as_root env DEBIAN_FRONTEND=noninteractive \
            apt-get install -q -y --no-install-recommends "${missing[@]}"
}
