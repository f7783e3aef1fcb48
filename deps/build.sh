#!/usr/bin/env bash
# Builds the libraries that the Windows build links, for i686 (or for the machine that GLIMMERPAD_HOST names, such as
# x86_64-w64-mingw32, which serves tests where no 32-bit program runs), from the distribution's own source
# packages (which carry its security patches). Each library is one recipe in this folder and is
# installed once into the cache, under a name that ends in the hash of everything that went into it:
# its recipe, the compiler flags and the recipes it depends on. A second checkout finds it there.
#
#   deps/build.sh          builds what is missing
#   deps/build.sh --list   prints the install folders, separated by ';'
#   deps/build.sh --only NAME
#
# A recipe is a shell file that sets
#   source_package   name of the distribution's source package ("" when there is nothing to fetch)
#   needs            names of the recipes that must be installed before it
#   licence          path of the licence text inside the source tree
# and defines build(), which runs in the unpacked source and installs into $prefix.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cache=${GLIMMERPAD_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/glimmerpad}
host=${GLIMMERPAD_HOST:-i686-w64-mingw32}
jobs=$(nproc)
order=(googletest simpleini cjson giflib libdeflate libpng libjpeg pixman cairo wxwidgets)

# Frames that a host calls may be aligned to 4 bytes only, and SSE arithmetic keeps pixel results the
# same as on x86-64. The libraries are built with the same options as the program.
arch_flags=""
[ $host = i686-w64-mingw32 ] && arch_flags=" -msse2 -mfpmath=sse -mstackrealign"
export CFLAGS="-O2$arch_flags" CXXFLAGS="-O2$arch_flags"

hash_of() {
    local name=$1
    # Variables of a recipe must not leak into the next one.
    (
        # shellcheck source=/dev/null
        source "$here/$name.sh"
        {
            echo "$host $CFLAGS"
            cat "$here/$name.sh"
            for need in $needs; do hash_of "$need"; done
        } | sha256sum | cut -c1-12
    )
}

prefix_of() { echo "$cache/$1-$(hash_of "$1")"; }

apt_options() {
    local dir=$cache/apt
    echo "-o Dir::Etc::SourceList=$dir/sources.list -o Dir::Etc::SourceParts=$dir/parts \
          -o Dir::State::Lists=$dir/lists -o Dir::Cache=$dir/cache -o APT::Sandbox::User= \
          -o Acquire::Languages=none"
}

# A private copy of the machine's own apt sources that names the source packages.
prepare_apt() {
    local dir=$cache/apt
    [ -e "$dir/ready" ] && return
    mkdir -p "$dir"/{parts,lists/partial,cache/archives/partial}
    : >"$dir/sources.list"
    if [ -e /etc/apt/sources.list ]; then
        sed -nE 's/^deb( |\t)/deb-src\1/p' /etc/apt/sources.list >"$dir/sources.list"
    fi
    local file
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -e "$file" ] && sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$dir/parts/$(basename "$file")"
    done
    for file in /etc/apt/sources.list.d/*.list; do
        [ -e "$file" ] && sed -nE 's/^deb( |\t)/deb-src\1/p' "$file" >"$dir/parts/$(basename "$file")"
    done
    # A mirror in the middle of a synchronisation ends this non-zero; what counts is that the sources resolve.
    # shellcheck disable=SC2046
    apt-get $(apt_options) update >"$dir/update.log" 2>&1 ||
        echo "deps: one index of the package mirror could not be read; going on" >&2
    touch "$dir/ready"
}

# Unpacks a source package into the current folder; the packaging patches are applied where there are any.
fetch() {
    prepare_apt
    # shellcheck disable=SC2046
    if ! apt-get $(apt_options) source --only-source "$1" >fetch.log 2>&1; then
        # shellcheck disable=SC2046
        apt-get $(apt_options) source --tar-only "$1" >>fetch.log 2>&1 || { tail -5 fetch.log >&2; return 1; }
        tar xf ./*.orig.tar.*
    fi
}

pkg_config_path() {
    local path="" need
    for need in $needs; do path="$path:$(prefix_of "$need")/lib/pkgconfig"; done
    echo "${path#:}"
}

# The C and linker flags that make the recipes named in $needs visible to a configure script.
need_cflags() { for need in $needs; do printf -- '-I%s/include ' "$(prefix_of "$need")"; done; }
need_ldflags() { for need in $needs; do printf -- '-L%s/lib ' "$(prefix_of "$need")"; done; }
need_prefixes() { for need in $needs; do printf '%s;' "$(prefix_of "$need")"; done; }

cmake_build() {
    cmake -S . -B out -G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/../cmake/$host.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" -DBUILD_SHARED_LIBS=OFF \
        -DGLIMMERPAD_LIBRARIES="$(need_prefixes)" "$@"
    cmake --build out -j"$jobs"
    cmake --install out
}

# Generated autotools files that look older than their sources would ask for automake.
freshen() { find . \( -name aclocal.m4 -o -name configure -o -name 'Makefile.in' -o -name config.h.in \) -exec touch {} +; sleep 1; find . -name configure -exec touch {} +; find . -name 'Makefile.in' -exec touch {} +; }

build_one() (
    local name=$1
    # shellcheck source=/dev/null
    source "$here/$name.sh"
    prefix=$(prefix_of "$name")
    [ -e "$prefix/.done" ] && return
    local started work
    started=$(date +%s)
    echo "deps: building $name"
    work=$cache/work/$host-$name
    rm -rf "$work" "$prefix"
    mkdir -p "$work" "$prefix"
    cd "$work"
    if [ -n "$source_package" ]; then
        fetch "$source_package"
        cd "$(find . -mindepth 1 -maxdepth 1 -type d | head -1)"
    fi
    PKG_CONFIG_LIBDIR=$(pkg_config_path)
    export PKG_CONFIG_LIBDIR
    # Not in a condition, where the shell would go on after a failed step.
    local outcome
    set +e
    (set -e; build) >"$work/build.log" 2>&1
    outcome=$?
    set -e
    if [ "$outcome" != 0 ]; then
        tail -30 "$work/build.log" >&2
        echo "deps: $name failed; the whole log is $work/build.log" >&2
        exit 1
    fi
    mkdir -p "$prefix/licences"
    cp $licence "$prefix/licences/$name.txt"
    touch "$prefix/.done"
    cd /
    rm -rf "$work"
    echo "deps: $name done in $(($(date +%s) - started)) s"
)

case ${1-} in
--list) for name in "${order[@]}"; do printf '%s;' "$(prefix_of "$name")"; done; echo ;;
--only)
    # Two checkouts may set up at once; the second finds done what it waited for.
    mkdir -p "$cache"
    exec 9>"$cache/build.lock"
    flock 9
    build_one "$2"
    ;;
"") for name in "${order[@]}"; do "$here/build.sh" --only "$name"; done ;;
*) echo "usage: deps/build.sh [--list | --only NAME]" >&2; exit 2 ;;
esac
