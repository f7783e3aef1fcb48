# shellcheck shell=bash disable=SC2154
# ./dev bench and ./dev fuzz. Sourced by ./dev.

bench_packages=(libopencv-dev libvips-dev libvips-tools)

# The benchmarks of the core on this machine, beside other libraries that do the same where the machine has them.
run_benchmarks() {
    install_packages "${packages[@]}" "${bench_packages[@]}"
    build_preset bench
    local program
    for program in "$build"/bench/bench/*_bench; do
        [ -x "$program" ] || die "there are no benchmarks"
        say "$(basename "$program")"
        (cd "$root" && "$program" "$@")
    done
    # The same as a Windows program; there are no other libraries to compare with there.
    setup
    build_preset "$windows_preset" glimmer_bench
    say "glimmer_bench as a $wine_bits-bit Windows program"
    (cd "$root" && run_in_wine "$build/$windows_preset/bench/glimmer_bench.exe" "$@")
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
        "$program" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
            -artifact_prefix="$root/fuzz/regressions/$name/" "$build/fuzz/corpus/$name" "$root/fuzz/corpus/$name" \
            "$root/fuzz/regressions/$name" 2>"$build/fuzz/$name.log" || failed=1
        grep -E 'number_of_executed_units|ERROR|SUMMARY' "$build/fuzz/$name.log" || true
        rmdir --ignore-fail-on-non-empty "$root/fuzz/corpus/$name" "$root/fuzz/regressions/$name"
    done
    [ $failed = 0 ] || die "a fuzzer found something; its input is in fuzz/regressions"
}
