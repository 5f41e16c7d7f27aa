# SPDX-License-Identifier: MIT
# Sourced by ./dev: what each of its commands needs of the system, and how it gets there.
# A package stands here because something of ours uses it; in which way stands beside it.

packages_build=(
    g++ cmake ninja-build pkg-config
    ccache lld                  # compiler cache and fast linker; the build works without them
    libxcb1-dev                 # the global hot key on X11
    qt6-base-dev                # Core, Gui, Widgets, DBus, the xcb and offscreen platforms
    qt6-svg-dev libqt6svg6      # symbols are SVG: the library, and its plugin for icons
    libglib2.0-dev              # GIO: the Trash
    libheif-dev                 # previews of HEIC and AVIF pictures
    qt6-multimedia-dev          # previews of sound and film
    libavutil-dev               # how much their decoders print
    qt6-pdf-dev                 # previews of PDF files
    zlib1g-dev                  # previews of packed drawings
    libtesseract-dev libleptonica-dev tesseract-ocr-eng # text on screenshots
    libssl-dev                  # SHA-256
    libplist-dev                # what an application's bundle says of itself
    bootstrap-icons fonts-inter # symbols compiled in, the typeface of the interface
    libgtest-dev libgmock-dev   # configuring looks for GoogleTest
)
packages_test=(
    tesseract-ocr-deu # a language beside English on screenshots
    desktop-file-utils appstream # validators of the desktop entry and the metainfo
    libglib2.0-bin gvfs-daemons gvfs dbus-daemon # gio and its Trash service: a second look at ours
    lintian dpkg-dev file man-db # the package and its manual page
    xvfb xdotool weston qt6-wayland # the installed program on X11 and on Wayland
)
packages_window=(
    xvfb openbox         # a display and a window manager where there is none
    xdotool imagemagick  # finding the window, taking its picture
)
packages_bench=(
    python3   # benchmarks/bench
    # what ours is compared with; left out of the table where it is not installed
    gdu            # a scan
    jdupes rdfind  # a search for duplicates
    plocate        # a search for names
)
packages_lint=(clang-format clang-tidy clang-14)
packages_mutate=(python3 git)
packages_fuzz=(clang-14 libclang-rt-14-dev)
packages_package=(dpkg-dev file)

# need GROUP…: installs what of these groups is missing. What is known to be there is remembered in
# build/, under the very list and the state of the system's package database, so that a second call
# costs nothing.
need() {
    local group wanted=() groups=()
    for group in "$@"; do
        local -n list=packages_$group
        local stamp="build/.installed-$group"
        if [[ ! -f $stamp || $(<"$stamp") != "${list[*]} $(package_state)" ]]; then
            wanted+=("${list[@]}")
            groups+=("$group")
        fi
    done
    ((${#wanted[@]})) || return 0
    if command -v apt-get >/dev/null; then
        install_missing "${wanted[@]}"
    else
        say "No apt-get here; expecting the like of: ${wanted[*]}"
    fi
    mkdir -p build
    for group in "${groups[@]}"; do
        local -n list=packages_$group
        printf '%s' "${list[*]} $(package_state)" >"build/.installed-$group"
    done
}

# Changes with every package that comes or goes, and from system to system.
package_state() { stat -c %d:%i:%Y /var/lib/dpkg/info 2>/dev/null || true; }

install_missing() {
    local missing=() name
    while read -r name; do
        missing+=("$name")
    done < <(comm -23 <(printf '%s\n' "$@" | LC_ALL=C sort -u) <(installed_among "$@"))
    ((${#missing[@]})) || return 0
    local sudo=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || fail "not root and no sudo; please install: ${missing[*]}"
        sudo=(sudo)
        say "Installing with sudo: ${missing[*]}"
    else
        say "Installing: ${missing[*]}"
    fi
    local apt=("${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq
        -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
    mkdir -p build
    local log=build/install.log
    # The lists are fetched only where they do not know the packages, or know them no longer.
    if ! "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >"$log" 2>&1; then
        say "Fetching the package lists"
        if ! { "${apt[@]}" update &&
            "${apt[@]}" install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
            tail -n 40 "$log" >&2
            fail "apt-get could not install: ${missing[*]} (see $log)"
        fi
    fi
}

# Those of the packages that are installed, sorted, one to a line.
installed_among() {
    { dpkg-query -W -f '${db:Status-Status} ${binary:Package}\n' "$@" 2>/dev/null || true; } |
        sed -n 's/^installed \([^:]*\).*/\1/p' | LC_ALL=C sort -u
}
