# shellcheck shell=bash disable=SC2034,SC2154
# ./dev shot: pictures of windows as Windows shows them, from the program in tools/shots. Sourced by ./dev.

# Windows writes its dialogs in Segoe UI, which nobody may hand on. Open Sans is nowhere narrower, so what fits in it fits.
shot_packages=(fonts-open-sans)

# The bytes of a LOGFONTW: 9 points, which the system makes larger with the scale, and the name.
font_bytes() {
    python3 -c '
import struct, sys
face = sys.argv[1].encode("utf-16-le")
bytes = struct.pack("<5i8B", 9, 0, 0, 0, 400, 0, 0, 0, 1, 0, 0, 0, 0) + face + bytes(64 - len(face))
print(",".join("%02x" % byte for byte in bytes))' "$1"
}

# What makes the prefix look like that: its own theme, none, or a contrast theme's colours.
shot_registry() {
    local dots=$1 look=$2 name font
    font=$(font_bytes 'Open Sans')
    printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Control Panel\\Desktop]\n"LogPixels"=dword:%08x\n' "$dots"
    printf '\n[HKEY_CURRENT_USER\\Control Panel\\Desktop\\WindowMetrics]\n'
    for name in MessageFont MenuFont StatusFont CaptionFont SmCaptionFont; do printf '"%s"=hex:%s\n' $name "$font"; done
    [ "$look" = usual ] && return
    printf '\n[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\ThemeManager]\n"ThemeActive"="0"\n'
    printf '\n[HKEY_CURRENT_USER\\Control Panel\\Colors]\n'
    local face='212 208 200' light='255 255 255' dark='128 128 128' ink='0 0 0' paper='255 255 255' chosen='10 36 106' \
        onChosen='255 255 255' link='0 0 128' desk='128 128 128'
    if [ "$look" = contrast ]; then
        face='0 0 0' light='0 0 0' dark='255 255 255' ink='255 255 255' paper='0 0 0' chosen='26 235 255' \
            onChosen='0 0 0' link='255 255 0' desk='0 0 0'
    fi
    local grey=$dark
    [ "$look" = contrast ] && grey='63 242 63'
    for name in ButtonFace ButtonAlternateFace Menu MenuBar Scrollbar ActiveBorder InactiveBorder InactiveTitle \
        GradientInactiveTitle; do printf '"%s"="%s"\n' $name "$face"; done
    for name in ButtonHilight ButtonLight; do printf '"%s"="%s"\n' $name "$light"; done
    for name in ButtonShadow ButtonDkShadow WindowFrame; do printf '"%s"="%s"\n' $name "$dark"; done
    for name in ButtonText WindowText MenuText InfoText InactiveTitleText; do printf '"%s"="%s"\n' $name "$ink"; done
    for name in Window InfoWindow; do printf '"%s"="%s"\n' $name "$paper"; done
    for name in Hilight MenuHilight ActiveTitle GradientActiveTitle; do printf '"%s"="%s"\n' $name "$chosen"; done
    for name in HilightText TitleText; do printf '"%s"="%s"\n' $name "$onChosen"; done
    printf '"GrayText"="%s"\n"HotTrackingColor"="%s"\n"AppWorkSpace"="%s"\n' "$grey" "$link" "$desk"
}

# Ends the prefix' server and puts the registry as it is after the prefix was made.
reset_shot_prefix() {
    "$wine_server" --kill 2>/dev/null || true
    "$wine_server" --wait 2>/dev/null || true
    if [ -e "$wine_prefix/user.reg.made" ]; then
        cp "$wine_prefix/user.reg.made" "$wine_prefix/user.reg"
    else
        cp "$wine_prefix/user.reg" "$wine_prefix/user.reg.made"
    fi
}

# ./dev shot NAME [DPI] [--classic|--contrast]
run_shot() {
    local group='' dots=96 look=usual argument
    for argument in "$@"; do
        case $argument in
        --classic | --contrast) look=${argument#--} ;;
        [0-9]*) dots=$argument ;;
        [a-z]*) group=$argument ;;
        *) group= && break ;;
        esac
    done
    [ -n "$group" ] || die "usage: ./dev shot NAME [DOTS-PER-INCH] [--classic|--contrast]"
    local suffix=
    [ "$dots" = 96 ] || suffix=-$dots
    [ "$look" = usual ] || suffix+=-$look
    setup >&2
    install_packages "${shot_packages[@]}"
    build_preset "$windows_preset" shots >&2
    mkdir -p "$build/shots" "$build/home"

    # A prefix and a display of their own: the tests' fonts and colours stay what they are, and 200 % find room.
    wine_prefix=$build/wine-shots display_file=$build/display-shots display_size=2600x1700
    wine_environment
    display_number >/dev/null || start_display
    DISPLAY=$(display_number)
    export DISPLAY
    trap 'stop_display' EXIT
    if [ ! -e "$wine_prefix/.ready$wine_bits" ]; then
        mkdir -p "$wine_prefix"
        create_prefix >&2
        # shellcheck disable=SC2046
        cp $(dpkg -L "${shot_packages[@]}" | grep '\.ttf$') "$wine_prefix/drive_c/windows/Fonts/"
    fi
    reset_shot_prefix
    shot_registry "$dots" "$look" >"$build/shots.reg"
    "${wine_loader[@]}" regedit /S "$build/shots.reg" </dev/null >/dev/null 2>&1 || die "the registry refused build/shots.reg"
    "${wine_loader[@]}" "$build/$windows_preset/tests/shots.exe" "$group" "$(windows_path "$build/shots")" $suffix </dev/null
    "$wine_server" --kill || true
    [ "$group" != all ] || group='[a-z]*'
    # shellcheck disable=SC2086
    ls -t "$build"/shots/$group"$suffix"-[a-z0-9]*
}
