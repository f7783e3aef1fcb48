# shellcheck shell=bash disable=SC2154
# ./dev run: opens a picture in the editor, or lets the demonstration host deliver one. Sourced by ./dev.

# A Windows program's path to a Linux file: drive Z is the root folder.
windows_path() { local path; path=$(realpath "$1"); echo "Z:${path//\//\\}"; }

unix_path() {
    local path=${1//\\//}
    path=${path%$'\r'}
    if [[ $path == [Zz]:* ]]; then echo "${path:2}"; else echo "$wine_prefix/drive_c${path:2}"; fi
}

# Waits until the program's main window is there: of the program's windows the one that is larger than any dialog.
# A notice that stands in front of it is answered as a user would. Gives up after a minute, or when the program ends.
wait_for_main_window() {
    local program=$1 number geometry deadline=$((SECONDS + 60)) seen=''
    while [ $SECONDS -lt $deadline ] && kill -0 "$program" 2>/dev/null; do
        for number in $(xdotool search --onlyvisible --class 'glimmerpad\.exe' 2>/dev/null); do
            geometry=$(xdotool getwindowgeometry --shell "$number" 2>/dev/null) || continue
            eval "$(grep -E '^(WIDTH|HEIGHT)=[0-9]+$' <<<"$geometry")"
            [ "${WIDTH:-0}" -ge 600 ] && [ "${HEIGHT:-0}" -ge 400 ] && seen=yes
        done
        # The notice comes at once after the window.
        if [ -n "$seen" ]; then
            sleep 1
            if number=$(xdotool search --onlyvisible --name '^(Error|Warning|Information)$' 2>/dev/null | tail -1) && [ -n "$number" ]; then
                say "answering the notice \"$(xdotool getwindowname "$number" 2>/dev/null)\""
                xdotool windowfocus "$number" key --clearmodifiers Return 2>/dev/null || true
                sleep 1
            fi
            return
        fi
        sleep 0.1
    done
    return 1
}

# Takes pictures of the screen until two in a row are the same: everything has been painted.
still_screenshot() {
    local file=$1 before="" now tries=0
    while [ $tries -lt 50 ]; do
        import -window root -depth 8 "$file"
        now=$(identify -format '%#' "$file")
        [ "$now" = "$before" ] && return
        before=$now
        tries=$((tries + 1))
        sleep 0.2
    done
}

run_on_virtual_display() {
    local picture=$1 program=$build/$windows_preset/bin/glimmerpad.exe pid screenshot=$build/screenshot.png
    start_wine
    # Its own process, which is ended at the end; nothing of the caller's output stays open in it.
    "${wine_loader[@]}" "$program" "$(windows_path "$picture")" </dev/null >"$build/run.log" 2>&1 &
    pid=$!
    if ! wait_for_main_window $pid; then
        kill $pid 2>/dev/null || true
        die "no window came up; see build/run.log"
    fi
    still_screenshot "$screenshot"
    "${wine_loader[@]}" "$program" -TERMINATE </dev/null >/dev/null 2>&1 || true
    local deadline=$((SECONDS + 10))
    while kill -0 $pid 2>/dev/null && [ $SECONDS -lt $deadline ]; do sleep 0.1; done
    kill $pid 2>/dev/null || true
    say "a screenshot of the program:"
    echo "$screenshot"
}

run_program() {
    local is_host='' picture=$root/samples/article-1280x1024.png
    if [ "${1-}" = --host ]; then
        is_host=yes
        shift
    fi
    [ $# -gt 0 ] && picture=$1
    [ -r "$picture" ] || die "there is no picture $picture"
    build_windows_programs >&2
    if [ -n "$is_host" ]; then
        wine_environment
        start_wine
        local saved
        saved=$("${wine_loader[@]}" "$build/$windows_preset/bin/demo_host.exe" "$(windows_path "$picture")" | tail -1)
        [ -n "$saved" ] || die "the host saved no picture"
        say "the host handed over the picture, and it was saved as ${saved%$'\r'}:"
        unix_path "$saved"
    elif [ -n "${DISPLAY-}" ]; then
        # On a real desktop the program gets a prefix of its own, with the window manager's frames.
        wine_prefix=$build/wine-desktop
        local display=$DISPLAY
        wine_environment
        export DISPLAY=$display
        if [ ! -e "$wine_prefix/.ready$wine_bits" ]; then
            mkdir -p "$wine_prefix" "$HOME"
            create_prefix managed
        fi
        exec "${wine_loader[@]}" "$build/$windows_preset/bin/glimmerpad.exe" "$(windows_path "$picture")"
    else
        wine_environment
        run_on_virtual_display "$picture"
    fi
}
