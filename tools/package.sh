# shellcheck shell=bash disable=SC2154
# ./dev package: what people install, as a zip file and as an installer. Sourced by ./dev.

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

product_version() { sed -nE 's/^project\(glimmerpad VERSION ([0-9.]+).*/\1/p' "$root/CMakeLists.txt"; }

# Lays out what is shipped in a folder that is made anew.
stage_package() {
    local folder=$1
    rm -rf "$folder"
    mkdir -p "$folder/include"
    cp "$build/windows/bin/glimmerpad.dll" "$build/windows/bin/glimmerpad.exe" "$folder/"
    cp "$root/include/glimmerpad.h" "$folder/include/"
    cp "$root/README.md" "$root/docs/host-interface.md" "$folder/"
    collect_licences "$folder/licences"
}

# The installer's instructions: it writes exactly these files, each as a new one, refuses a folder where somebody else's
# have their names, and its uninstaller removes exactly these.
list_for_installer() {
    local folder=$1 name directory windows
    echo '!ifdef INSTALL_FILES'
    (cd "$folder" && find . -type f -printf '%P\n' | sort) | while read -r name; do
        directory=$(dirname "$name")
        windows=${directory//\//\\}
        echo "SetOutPath \"\$INSTDIR\\${windows#.}\""
        echo "Delete \"\$INSTDIR\\${name//\//\\}\""
        echo "File \"$folder/$name\""
    done
    echo '!endif'
    echo '!ifdef FOREIGN_FILES'
    (cd "$folder" && find . -type f -printf '%P\n' | sort) | while read -r name; do
        echo "!insertmacro REFUSE_FOREIGN \"${name//\//\\}\""
    done
    echo '!endif'
    echo '!ifdef UNINSTALL_FILES'
    (cd "$folder" && find . -type f -printf '%P\n' | sort) | while read -r name; do
        echo "Delete \"\$INSTDIR\\${name//\//\\}\""
    done
    (cd "$folder" && find . -mindepth 1 -type d -printf '%P\n' | sort -r) | while read -r name; do
        echo "RMDir \"\$INSTDIR\\${name//\//\\}\""
    done
    echo '!endif'
}

# make_installer FOLDER INSTALLER [OPTION...]: from a folder that stage_package laid out; the options are makensis'.
make_installer() {
    local folder=$1 installer=$2
    shift 2
    list_for_installer "$folder" >"$folder.nsh"
    # The strip beside its first and last page: the program's icon in its largest size on the icon's blue.
    /usr/bin/convert -size 164x314 'gradient:#3b82f6-#1e3a8a' \( "$root/src/resources/glimmerpad.ico[7]" -resize 96x96 \) \
        -gravity north -geometry +0+72 -composite "BMP3:$folder.bmp"
    local copyright signing=()
    copyright=$(sed -nE 's/^#define COPYRIGHT "(.*)"$/\1/p' "$root/src/resources/version.h")
    [ -z "${GLIMMERPAD_CERTIFICATE-}" ] || signing=(-DSIGN="$root/tools/sign.sh")
    makensis -V2 -NOCD -DVERSION="$(product_version)" -DFILES="$folder.nsh" -DOUTPUT="$installer" -DSTRIP="$folder.bmp" \
        -DICON="$root/src/resources/glimmerpad.ico" -DCOPYRIGHT="$copyright" "${signing[@]}" "$@" \
        "$root/packaging/installer.nsi" >"$folder.nsis.log" ||
        { cat "$folder.nsis.log" >&2; die "the installer could not be made"; }
    sign "$installer"
}

# Signs files, if a certificate is given (see tools/sign.sh).
sign() { [ -z "${GLIMMERPAD_CERTIFICATE-}" ] || "$root/tools/sign.sh" "$@" || die "not signed: $*"; }

# In build/package, or in the folder that GLIMMERPAD_PACKAGE names.
make_package() {
    setup
    install_packages zip
    [ -z "${GLIMMERPAD_CERTIFICATE-}" ] || install_packages osslsigncode
    build_preset windows glimmerpad glimmerpad_launcher >&2
    "$root/tests/package/check_library.sh" "$build/windows/bin/glimmerpad.dll" >&2
    local place=${GLIMMERPAD_PACKAGE:-$build/package} folder name
    name=glimmerpad-$(product_version)
    folder=$place/$name
    stage_package "$folder"
    sign "$folder/glimmerpad.dll" "$folder/glimmerpad.exe"
    rm -f "$folder.zip"
    (cd "$place" && zip -q -r -9 -X "$name.zip" "$name" && unzip -tq "$name.zip" >/dev/null)
    make_installer "$folder" "$folder-setup.exe"
    say "glimmerpad.dll: $(stat -c %s "$build/windows/bin/glimmerpad.dll") bytes, packed: $(stat -c %s "$folder.zip") bytes," \
        "installer: $(stat -c %s "$folder-setup.exe") bytes"
    printf '%s\n' "$folder.zip" "$folder-setup.exe"
}
