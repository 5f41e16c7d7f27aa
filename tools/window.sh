# SPDX-License-Identifier: MIT
# Sourced by ./dev: a program on a virtual display of its own, and the picture of its window.

started=() # the processes that this run has started, youngest last

end_what_was_started() {
    local index
    for ((index = ${#started[@]} - 1; index >= 0; --index)); do
        kill "${started[index]}" 2>/dev/null || true
        wait "${started[index]}" 2>/dev/null || true
    done
    started=()
}

# start_in_background LOG COMMAND…
start_in_background() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 &
    started+=($!)
}

# start_display FOLDER: an X server on a display number that it picks itself, and a window manager.
start_display() {
    local folder=$1 number=""
    mkfifo "$folder/display" "$folder/managed"
    Xvfb -displayfd 3 -screen 0 1680x1080x24 -nolisten tcp 3>"$folder/display" \
        >"$folder/Xvfb.log" 2>&1 &
    started+=($!)
    read -r -t 30 number <>"$folder/display" || fail "Xvfb does not start, see $folder/Xvfb.log"
    export DISPLAY=:$number
    # A window that is mapped before the manager is up may never be shown.
    start_in_background "$folder/openbox.log" env MANAGED="$PWD/$folder/managed" \
        openbox --startup "sh -c 'echo up >\"\$MANAGED\"'"
    read -r -t 30 <>"$folder/managed" || fail "openbox does not start, see $folder/openbox.log"
    rm "$folder/display" "$folder/managed"
}

# window_of PID: the largest visible window of the process; nothing while there is none.
window_of() {
    local id best="" size=0 WIDTH HEIGHT WINDOW X Y SCREEN
    for id in $(xdotool search --onlyvisible --pid "$1" 2>/dev/null); do
        eval "$(xdotool getwindowgeometry --shell "$id" 2>/dev/null)" || continue
        if ((WIDTH * HEIGHT > size)); then
            size=$((WIDTH * HEIGHT))
            best=$id
        fi
    done
    printf '%s' "$best"
}

# How many pixels of two pictures differ; a large number when they cannot be compared.
pixels_that_differ() {
    local count
    count=$(compare -metric AE "$1" "$2" null: 2>&1) || true
    [[ $count =~ ^[0-9]+$ ]] && printf '%s' "$count" || printf '%s' 1000000
}

# picture_at_rest PID PICTURE SECONDS: pictures of the window until nothing but a blinking caret moves
# in it for two seconds, which it does all through a scan. False when the time is over before.
picture_at_rest() {
    local pid=$1 picture=$2 deadline=$((SECONDS + $3)) window quiet=0
    local next=${2%.png}-next.png
    while ((SECONDS < deadline)); do
        kill -0 "$pid" 2>/dev/null || fail "the program ended, see ${picture%/*}/quorvane.log"
        sleep 0.5
        window=$(window_of "$pid")
        [[ -n $window ]] || continue
        timeout 20 import -silent -window "$window" "$next" 2>/dev/null || continue
        if [[ -f $picture ]] && (($(pixels_that_differ "$picture" "$next") <= 100)); then
            ((++quiet))
        else
            quiet=0
        fi
        mv "$next" "$picture"
        ((quiet < 4)) || return 0
    done
    return 1
}

# run_on_virtual_display KEEP PROGRAM [FOLDER]
run_on_virtual_display() {
    local keep=$1 program=$2 place=build/run
    shift 2
    rm -rf "$place"
    mkdir -p "$place"
    trap end_what_was_started EXIT
    trap 'exit 130' INT TERM
    start_display "$place"
    if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then
        export XDG_RUNTIME_DIR=$PWD/$place/runtime
        mkdir -m 700 "$XDG_RUNTIME_DIR"
    fi
    say "No display here: starting on the virtual one $DISPLAY"
    start_in_background "$place/quorvane.log" "$program" "$@"
    local pid=${started[-1]}
    if picture_at_rest "$pid" "$place/window.png" 600; then
        say "Picture of the window: $place/window.png"
    elif [[ -f $place/window.png ]]; then
        say "Picture of the window, still moving after ten minutes: $place/window.png"
    else
        fail "no window within ten minutes, see $place/quorvane.log"
    fi
    cat "$place/quorvane.log"
    if ((keep)); then
        say "Running on display $DISPLAY, process $pid; Ctrl-C ends it"
        wait "$pid"
    fi
}
