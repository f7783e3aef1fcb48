# shellcheck shell=bash disable=SC2154
# ./dev bench and ./dev fuzz. Sourced by ./dev.

bench_packages=(libopencv-dev libvips-dev libvips-tools libre2-dev libssl-dev)
# Other programs that show a picture, to start beside ours.
start_packages=(libx11-dev ksnip gpicview)

# The benchmarks of the core on this machine, beside other libraries and programs that do the same, and then as a Windows
# program, where there are none. The tables go to the standard output, all else to the other.
run_benchmarks() {
    install_packages "${packages[@]}" "${bench_packages[@]}"
    build_preset bench glimmer_bench >&2
    cd "$root" || return
    printf '## Natively\n'
    "$build/bench/bench/glimmer_bench" "$@"
    setup >&2
    build_preset "$windows_preset" glimmer_bench >&2
    printf '\n## As a %s-bit Windows program under Wine\n' "$wine_bits"
    (run_in_wine "$build/$windows_preset/bench/glimmer_bench.exe" "$@")
    [ $# -gt 0 ] || run_window_benchmarks
}

# The main window with forty captures, and the start of the program beside that of others on the same display.
run_window_benchmarks() {
    install_packages "${start_packages[@]}"
    wine_environment
    build_preset bench start_bench >&2
    build_preset "$windows_preset" main_editor_bench "${shipped[@]}" >&2
    start_wine
    printf '\n## Windows, under Wine\n'
    "${wine_loader[@]}" "$build/$windows_preset/bench/main_editor_bench.exe"
    with_desktop "$build/bench/bench/start_bench" \
        'glimmerpad.exe FILE' "${wine_loader[*]} '$build/$windows_preset/bin/glimmerpad.exe' %w" \
        'ksnip -e FILE' 'ksnip -e %s' 'gpicview FILE' 'gpicview %s'
}

# The network client beside curl, both to the same server on this machine, which reads a multipart upload of 50 MB.
run_network_benchmark() {
    install_packages "${packages[@]}" curl
    build_preset "$windows_preset" network_bench >&2
    wine_environment
    start_wine
    local folder port
    folder=$(mktemp -d)
    head -c 50000000 /dev/urandom >"$folder/picture.png"
    /usr/bin/python3 "$root/tests/upload/servers/network_servers.py" "$folder"
    port=$(sed -n 's/^http //p' "$folder/ports")
    printf '\n## Network, under Wine\n'
    "${wine_loader[@]}" "$build/$windows_preset/bench/network_bench.exe" "$folder" "$folder/picture.png"
    for _ in 1 2 3 4 5; do
        curl -s -o /dev/null -0 -H Expect: -F "file=@$folder/picture.png" -w '%{time_total}\n' "http://127.0.0.1:$port/quiet"
    done | sort -n | sed -n '1s/^/curl /p'
    touch "$folder/stop"
    rm -rf "$folder"
}

# fuzz SECONDS [NAME]: every fuzzer for that long, from its corpus; an input that crashes goes to fuzz/regressions/NAME.
run_fuzzers() {
    local seconds=${1-60} only=${2-} program name failed=0
    install_packages "${packages[@]}" clang libclang-rt-14-dev
    build_preset fuzz
    for program in "$build"/fuzz/fuzz/*; do
        [ -f "$program" ] && [ -x "$program" ] || continue
        name=$(basename "$program")
        [ -z "$only" ] || [ "$name" = "$only" ] || continue
        mkdir -p "$root/fuzz/corpus/$name" "$root/fuzz/regressions/$name" "$build/fuzz/corpus/$name"
        say "$name for $seconds s"
        # What is found is kept in the build folder; the corpus in the tree is chosen by hand.
        "$program" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -malloc_limit_mb=256 -print_final_stats=1 \
            -artifact_prefix="$root/fuzz/regressions/$name/" "$build/fuzz/corpus/$name" "$root/fuzz/corpus/$name" \
            "$root/fuzz/regressions/$name" 2>"$build/fuzz/$name.log" || failed=1
        grep -E 'number_of_executed_units|ERROR|SUMMARY' "$build/fuzz/$name.log" || true
        rmdir --ignore-fail-on-non-empty "$root/fuzz/corpus/$name" "$root/fuzz/regressions/$name"
    done
    [ $failed = 0 ] || die "a fuzzer found something; its input is in fuzz/regressions"
}
