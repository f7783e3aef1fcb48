# shellcheck shell=bash disable=SC2154
# ./dev lint and ./dev format. Sourced by ./dev.

lint_packages=(clang clang-tidy clang-format cppcheck)

# Our own sources: every C and C++ file that git knows or would know.
our_sources() { git -C "$root" ls-files --cached --others --exclude-standard -- "$@"; }

format_sources() {
    install_packages "${lint_packages[@]}"
    (cd "$root" && our_sources '*.cpp' '*.h' '*.c' | grep -v 'src/resources/' | xargs -r clang-format-14 -i)
}

# The files of a compile database that belong to us, one a line.
files_of() {
    python3 -c '
import json, os, sys
root, database = sys.argv[1:3]
for file in sorted({os.path.normpath(os.path.join(e["directory"], e["file"])) for e in json.load(open(database))}):
    if file.startswith(root + "/") and not file.startswith(root + "/build/") and not file.endswith(".rc"):
        print(file)
' "$root" "$build/$1/compile_commands.json"
}

# tidy PRESET FILE-LIST [clang option...]: two at a time; prints what is found and remembers that there was something.
tidy() {
    local preset=$1 list=$2 extra=() option
    shift 2
    for option in "$@"; do extra+=("--extra-arg=$option"); done
    xargs -r -P "$(nproc)" -n 4 clang-tidy-14 --quiet -p "$build/$preset" "${extra[@]}" <"$list" \
        > >(grep -v '^$') 2> >(grep -vE 'warnings? (generated|treated)|Suppressed|Use -header-filter|^$' >&2)
}

lint_sources() {
    install_packages "${lint_packages[@]}"
    setup
    [ -e "$build/native/build.ninja" ] || configure native
    [ -e "$build/windows/build.ninja" ] || configure windows
    # Generated headers and sources must be there to be read.
    cmake --build "$build/windows" --target glimmer_generated >/dev/null 2>&1 || true
    local failed=0 filter=${1-.}
    cd "$root" || return

    say "what Windows does not forgive"
    tools/check_sources.py || failed=1
    tools/check_layers.py || failed=1

    say "clang-format"
    our_sources '*.cpp' '*.h' '*.c' | grep -v 'src/resources/' | grep -E "$filter" |
        xargs -r clang-format-14 --dry-run -Werror || failed=1

    say "clang-tidy, core"
    files_of native | grep -E "$filter" >"$build/lint-native" || true
    tidy native "$build/lint-native" -Wno-unknown-warning-option || failed=1

    # The Windows sources, with clang speaking mingw's dialect and its headers; what was looked at above is left out.
    say "clang-tidy, Windows"
    local gcc=/usr/lib/gcc/i686-w64-mingw32/12-posix
    files_of windows | grep -E "$filter" | grep -vxFf "$build/lint-native" >"$build/lint-windows" || true
    tidy windows "$build/lint-windows" --target=i686-w64-mingw32 -Wno-unknown-warning-option \
        -Wno-unused-command-line-argument -nostdinc++ -isystem "$gcc/include/c++" \
        -isystem "$gcc/include/c++/i686-w64-mingw32" || failed=1

    say "cppcheck"
    # shellcheck disable=SC2046
    cppcheck --quiet --std=c++20 --language=c++ --enable=warning,performance,portability --inline-suppr \
        --suppress=missingIncludeSystem --suppress=uninitMemberVar --suppress=virtualCallInConstructor \
        --error-exitcode=1 -j "$(nproc)" -I src -I include \
        $(our_sources 'src/*.cpp' 'launcher/*.cpp' 'bench/*.cpp' 'fuzz/*.cpp' | grep -E "$filter") || failed=1

    [ $failed = 0 ] || die "lint found something"
    say "lint: all clean"
}
