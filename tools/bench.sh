# SPDX-License-Identifier: MIT
# Sourced by ./dev: what the program promises about speed and memory, measured. A promise is a ratio of
# two things measured in turn on the same tree in the same run, so that a busy machine slows down both.

bench_rounds=5

# json_number NAME: the value of a number in the one-line object on standard input.
json_number() { sed -n 's/.*"'"$1"'": *\([-+.0-9eE]*\).*/\1/p'; }

# The middle one of the numbers on standard input.
median() { sort -g | awk '{ value[NR] = $1 } END { print value[int((NR + 1) / 2)] }'; }

# wall_seconds COMMAND…: how long it took.
wall_seconds() {
    local TIMEFORMAT=%R
    { time "$@" >/dev/null 2>&1; } 2>&1
}

# promise WHAT MEASURED LIMIT: one line of the table.
promise() {
    awk -v what="$1" -v measured="$2" -v limit="$3" 'BEGIN {
        printf "  %-52s %8.2f   promised %6.2f   %s\n", what, measured, limit,
               measured <= limit ? "kept" : "BROKEN" }'
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { print a / b }'; }

# bench_promises ENTRIES: the scan's promises, on a generated tree that is kept for the next time.
bench_promises() {
    local entries=$1 tree=build/bench/tree-$1 round name
    if [[ ! -f $tree.complete ]]; then
        say "Making a tree of $entries entries"
        rm -rf "$tree"
        mkdir -p build/bench
        "$instrument" tree "$tree" --entries "$entries" --seed 1
        touch "$tree.complete"
    fi
    say "Measuring in turn, $bench_rounds rounds after one to warm up"
    local place=build/bench/result
    rm -rf "$place"
    mkdir -p "$place"
    for ((round = 0; round <= bench_rounds; ++round)); do
        ((round != 1)) || rm -f "$place"/*
        "$instrument" scan "$tree" --workers 2 --floor --json >>"$place/floor"
        "$instrument" scan "$tree" --workers 2 --json >>"$place/two"
        "$instrument" scan "$tree" --workers 8 --json >>"$place/eight"
        wall_seconds du -s "$tree" >>"$place/du"
    done
    local floor two eight du
    for name in floor two eight; do
        printf -v "$name" '%s' "$(json_number wallSeconds <"$place/$name" | median)"
    done
    du=$(median <"$place/du")
    printf '  system calls alone %s s, scan %s s with 2 workers and %s s with 8, du -s %s s\n' \
        "$floor" "$two" "$eight" "$du"
    promise "scan with 2 workers / system calls alone" "$(ratio "$two" "$floor")" 1.20
    promise "scan with 2 workers / du -s" "$(ratio "$two" "$du")" 0.55
    promise "scan with 8 workers / scan with 2" "$(ratio "$eight" "$two")" 1.05
    promise "rollup and sort, percent of the scan" \
        "$(awk -v a="$(json_number finalPassSeconds <"$place/two" | median)" -v b="$two" \
            'BEGIN { print 100 * a / b }')" 8
    promise "memory of tree and index, bytes an entry" \
        "$(json_number bytesPerEntry <"$place/two" | median)" 90
    promise "dropping the tree, milliseconds" \
        "$(json_number dropSeconds <"$place/two" | median | awk '{ print 1000 * $1 }')" 5
}
