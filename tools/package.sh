# shellcheck shell=bash disable=SC2154
# ./dev package: what people install, as a zip file. Sourced by ./dev.

# The licences of everything that is linked in: our libraries', zlib's and those of the compiler's run-time.
collect_licences() {
    local folder=$1 prefix name
    mkdir -p "$folder"
    local prefixes
    IFS=';' read -ra prefixes <<<"$("$root/deps/build.sh" --list)"
    for prefix in "${prefixes[@]}"; do
        [ -n "$prefix" ] || continue
        for name in "$prefix"/licences/*.txt; do
            # Tests are not shipped.
            [ "$(basename "$name")" = googletest.txt ] || cp "$name" "$folder/"
        done
    done
    cp /usr/share/doc/libz-mingw-w64-dev/copyright "$folder/zlib.txt"
    cp /usr/share/doc/g++-mingw-w64-i686-posix/copyright "$folder/gcc-runtime.txt"
    cp /usr/share/doc/mingw-w64-i686-dev/copyright "$folder/mingw-w64-runtime.txt"
}

make_package() {
    install_packages zip unzip
    setup
    build_preset windows glimmerpad glimmerpad_launcher
    "$root/tests/package/check_library.sh" "$build/windows/bin/glimmerpad.dll"
    local version name
    version=$(sed -nE 's/^project\(glimmerpad VERSION ([0-9.]+).*/\1/p' "$root/CMakeLists.txt")
    name=glimmerpad-$version
    rm -rf "$build/package/$name" "$build/package/$name.zip"
    mkdir -p "$build/package/$name/include"
    cp "$build/windows/bin/glimmerpad.dll" "$build/windows/bin/glimmerpad.exe" "$build/package/$name/"
    cp "$root/include/glimmerpad.h" "$build/package/$name/include/"
    cp "$root/README.md" "$root/docs/host-interface.md" "$build/package/$name/"
    collect_licences "$build/package/$name/licences"
    (cd "$build/package" && zip -q -r -9 -X "$name.zip" "$name" && unzip -tq "$name.zip" >/dev/null)
    say "glimmerpad.dll: $(stat -c %s "$build/windows/bin/glimmerpad.dll") bytes, packed: $(stat -c %s "$build/package/$name.zip") bytes"
    echo "$build/package/$name.zip"
}
