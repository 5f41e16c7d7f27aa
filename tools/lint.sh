# SPDX-License-Identifier: MIT
# Sourced by ./dev: what the house asks of a file beyond compiling.

# Every source file in the tree that git knows or is about to know.
source_files() {
    git ls-files --cached --others --exclude-standard -- "$@" |
        while read -r file; do [[ -f $file ]] && printf '%s\n' "$file"; done
}

cxx_files() { source_files '*.cpp' '*.h' '*.mm'; }

format() {
    need lint
    cxx_files | xargs -r clang-format -i
}

lint() {
    local all=0 since="" seconds=0
    while (($#)); do
        case $1 in
        --all) all=1 ;;
        --since) since=${2:?--since wants a revision} && shift ;;
        --seconds) seconds=${2:?--seconds wants a number} && shift ;;
        *) fail "lint knows no option $1" ;;
        esac
        shift
    done
    need build lint
    local failed=0
    lint_format || failed=1
    lint_rules || failed=1
    lint_tidy "$all" "$since" "$seconds" || failed=1
    ((failed == 0)) || fail "lint found something"
    say "Lint is content"
}

lint_format() {
    say "Formatting"
    cxx_files | xargs -r clang-format --dry-run -Werror
}

# complain WHAT: prints the lines on standard input under a heading; false if there are any.
complain() {
    local lines
    lines=$(cat)
    [[ -n $lines ]] || return 0
    printf '%s:\n%s\n' "$1" "$(sed 's/^/    /' <<<"$lines")" >&2
    return 1
}

without_licence() {
    source_files '*.cpp' '*.h' '*.mm' '*.sh' '*.cmake' '*CMakeLists.txt' dev .ci/run cmake/run-isolated |
        while read -r file; do
            head -n 2 "$file" | grep -q 'SPDX-License-Identifier: MIT' || echo "$file"
        done
}

too_long() {
    cxx_files | while read -r file; do
        local lines
        lines=$(wc -l <"$file")
        ((lines <= 700)) || echo "$file: $lines lines"
    done
}

lint_rules() {
    local result=0
    say "File rules"
    complain "Without the licence line" < <(without_licence) || result=1
    complain "Longer than 700 lines" < <(too_long) || result=1
    complain "An include that climbs out of its folder" \
        < <(cxx_files | xargs -r grep -nE '#include [<"]\.\./') || result=1
    complain "Objects, timers and event loops have no place in the logic" < <(
        logic_files | xargs -r grep -nE \
            '\bQ_OBJECT\b|#include <(QObject|QThread|QTimer|QEventLoop|QCoreApplication)>'
    ) || result=1
    complain "Tips of the screens go through showPlainToolTip" < <(
        cxx_files | grep -v '^src/widgets/ToolTip' | xargs -r grep -nE 'QToolTip::showText'
    ) || result=1
    return "$result"
}

# The logic: a subsystem's own folder, without its screens and the views of a preview.
logic_files() {
    source_files src/{base,scan,visualizers,reclaim,search,tagging,snapshots,monitor,screenshots} |
        grep -E '\.(cpp|h)$' | grep -vE '/(screens|preview)/' || true
}

# changed_files REV: sources that differ from the revision, a changed header standing for the source
# of its name.
changed_files() {
    { git diff --name-only --diff-filter=d "$1" -- && git ls-files --others --exclude-standard; } |
        sed -n 's/\.h$/.cpp/; /\.cpp$/p' | sort -u | while read -r file; do
            [[ -f $file ]] && printf '%s\n' "$file"
        done
}

# What the work at hand started from: where it left the main line, or the commit before.
base_revision() {
    local base head main
    head=$(git rev-parse HEAD)
    for main in origin/main main; do
        base=$(git merge-base HEAD "$main" 2>/dev/null) || continue
        [[ $base == "$head" ]] || { printf '%s' "$base" && return; }
    done
    git rev-parse -q --verify HEAD~1 || git hash-object -t tree /dev/null
}

# lint_tidy ALL SINCE SECONDS
lint_tidy() {
    local all=$1 since=$2 seconds=$3 files
    configure lint
    if ((all)); then
        files=$(source_files '*.cpp')
    else
        files=$(changed_files "${since:-$(base_revision)}")
    fi
    # Only what this system compiles; in an order that differs from commit to commit, so that a run
    # with a time limit comes by every file sooner or later.
    files=$(printf '%s\n' "$files" | while read -r file; do
        grep -qF "\"$PWD/$file\"" build/lint/compile_commands.json && printf '%s\n' "$file"
    done | sort -R --random-source=<(git rev-parse HEAD; yes)) || true
    if [[ -z $files ]]; then
        say "clang-tidy: nothing changed"
        return 0
    fi
    say "clang-tidy on $(wc -l <<<"$files") files"
    rm -f build/lint/left-out
    TIDY_DEADLINE=$((seconds ? $(date +%s) + seconds : 0)) \
        xargs -P "$jobs" -n 1 bash -c '
            if ((TIDY_DEADLINE && $(date +%s) >= TIDY_DEADLINE)); then
                echo "$1" >>build/lint/left-out
            else
                clang-tidy -p build/lint --quiet "$1" 2>/dev/null
            fi' tidy <<<"$files" || return 1
    if [[ -f build/lint/left-out ]]; then
        say "clang-tidy: out of time; NOT looked at: $(wc -l <build/lint/left-out) files"
        sed 's/^/    /' build/lint/left-out
    fi
}
