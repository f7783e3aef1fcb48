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

# Of the paths on the input those that lint looks at: all, those that match an expression, or what changed since a
# commit. A header is looked at through a source that includes it; what that source itself says is told, too.
lint_expression=.
chosen() {
    set +e
    if [ -n "$lint_expression" ]; then grep -E "$lint_expression"; else grep -xFf "$build/lint-changed"; fi
    cat >/dev/null
}

# Writes the files that changed since a commit into build/lint-changed, with a source for each header.
list_changed() {
    local file name source
    git -C "$root" rev-parse -q --verify "$1^{commit}" >/dev/null || die "there is no commit $1"
    while IFS= read -r file; do
        [ -e "$root/$file" ] || continue
        echo "$file"
        [[ $file == *.h ]] || continue
        name=${file%.h}
        if [ -e "$root/$name.cpp" ]; then
            echo "$name.cpp"
        else
            (cd "$root" && git grep -l --untracked "#include \"\(.*/\)\?${file##*/}\"" -- '*.cpp') | head -1
        fi
    done < <(git -C "$root" diff --name-only "$1"
        our_sources | grep -vxFf <(git -C "$root" ls-tree -r --name-only "$1")) |
        { grep -E '\.(cpp|h|c)$' || true; } | sort -u |
        while IFS= read -r source; do printf '%s\n%s/%s\n' "$source" "$root" "$source"; done
}

lint_sources() {
    install_packages "${lint_packages[@]}"
    setup
    [ -e "$build/native/build.ninja" ] || configure native
    [ -e "$build/windows/build.ninja" ] || configure windows
    # Generated headers and sources must be there to be read.
    cmake --build "$build/windows" --target glimmer_generated >/dev/null 2>&1 || true
    local failed=0
    cd "$root" || return
    if [ "${1-}" = --since ]; then
        lint_expression=
        list_changed "${2-HEAD}" >"$build/lint-changed"
    else
        lint_expression=${1-.}
    fi

    say "what Windows does not forgive"
    tools/check_sources.py || failed=1
    tools/check_layers.py || failed=1

    say "clang-format"
    our_sources '*.cpp' '*.h' '*.c' | grep -v 'src/resources/' | chosen |
        xargs -r clang-format-14 --dry-run -Werror || failed=1

    say "clang-tidy, core"
    files_of native | chosen >"$build/lint-native" || true
    tidy native "$build/lint-native" -Wno-unknown-warning-option || failed=1

    # The Windows sources, with clang speaking mingw's dialect and its headers; what was looked at above is left out.
    say "clang-tidy, Windows"
    local gcc=/usr/lib/gcc/i686-w64-mingw32/12-posix
    files_of windows | chosen | grep -vxFf "$build/lint-native" >"$build/lint-windows" || true
    tidy windows "$build/lint-windows" --target=i686-w64-mingw32 -Wno-unknown-warning-option \
        -Wno-unused-command-line-argument -nostdinc++ -isystem "$gcc/include/c++" \
        -isystem "$gcc/include/c++/i686-w64-mingw32" || failed=1

    say "cppcheck"
    local sources
    mapfile -t sources < <(our_sources 'src/*.cpp' 'launcher/*.cpp' 'bench/*.cpp' 'fuzz/*.cpp' | chosen)
    [ ${#sources[@]} = 0 ] || cppcheck --quiet --std=c++20 --language=c++ --inline-suppr \
        --enable=warning,performance,portability --suppress=missingIncludeSystem --suppress=uninitMemberVar --suppress=virtualCallInConstructor \
        --error-exitcode=1 -j "$(nproc)" -I src -I include "${sources[@]}" || failed=1

    [ $failed = 0 ] || die "lint found something"
    say "lint: all clean"
}
