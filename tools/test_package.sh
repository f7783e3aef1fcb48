# shellcheck shell=bash disable=SC2154
# ./dev package tests: the test programs for a Windows without any of our tools; ./dev exchange: judges here what they
# wrote there. Sourced by ./dev.

# For run_tests.exe, a line each: name, longest seconds, program, its arguments. The questions to the system come first;
# the tests are those of CTest. What needs the sources or a Linux shell is no Windows program and not among them.
list_test_programs() {
    echo 'facts 120 facts results\facts.txt'
    ctest --test-dir "$build/windows" --show-only=json-v1 | python3 -c '
import json, sys
for test in json.load(sys.stdin)["tests"]:
    limits = [p["value"] for p in test["properties"] if p["name"] == "TIMEOUT"]
    name = test["name"].split(".")[-1]
    print(name, int(limits[0]), name)'
    local group
    for group in canvas dialogs main options recovery; do echo "shots-$group 300 shots $group results\\shots"; done
}

stage_test_package() {
    local folder=$1 file
    rm -rf "$folder"
    mkdir -p "$folder/bin" "$folder/tests" "$folder/docs"
    cp "$build"/windows/bin/{glimmerpad.dll,glimmerpad.exe,demo_host.exe} "$folder/bin/"
    list_test_programs | sed 's/$/\r/' >"$folder/tests/order.txt"
    # The programs of the list, and what they load or start.
    for file in "$build"/windows/tests/*.exe "$build"/windows/tests/*.dll; do
        i686-w64-mingw32-strip -o "$folder/tests/$(basename "$file")" "$file"
    done
    cp -r "$root/samples" "$folder/"
    cp "$root"/docs/*.md "$folder/docs/" # tests read examples there
    collect_licences "$folder/licences"
    # On Windows the editor for texts was the last to learn of other ends of lines.
    for file in "$root"/packaging/tests/*; do sed 's/$/\r/' "$file" >"$folder/$(basename "$file")"; done
}

make_test_package() {
    setup
    install_packages zip
    build_preset windows >&2
    build_preset windows shots >&2
    local folder=$build/package/gp-tests zip
    zip=$build/package/glimmerpad-$(product_version)-tests.zip
    stage_test_package "$folder"
    rm -f "$zip"
    (cd "$build/package" && zip -q -r -X "$zip" gp-tests)
    say "$(wc -l <"$folder/tests/order.txt") programs, $(stat -c %s "$zip") bytes"
    echo "$zip"
}

# Runs each command line that a test left, beside the files it names: it must succeed and say what the test wants.
judge_exchange() {
    [ -r "${1-}" ] || die "usage: ./dev exchange results.zip"
    install_packages "${packages[@]}"
    local folder=$build/exchange command line output result failed=0 count=0
    rm -rf "$folder"
    mkdir -p "$folder"
    # Unlike unzip this reads names as they were written, whatever the caller's locale.
    python3 -c 'import sys, zipfile; zipfile.ZipFile(sys.argv[1]).extractall(sys.argv[2])' "$1" "$folder" ||
        die "$1 cannot be unpacked"
    while read -r command; do
        count=$((count + 1))
        result=PASS
        output=$(export LC_ALL=C.UTF-8 && cd "$(dirname "$command")" && timeout 120 sh "./$(basename "$command")" 2>&1) || result="FAIL ($?)"
        while IFS= read -r line; do
            [ -z "$line" ] || grep -qF -- "$line" <<<"$output" || result="FAIL (does not say \"$line\")"
        done <"${command%.command}.says"
        [ "$result" = PASS ] || failed=1
        printf '%-50s %-30.30s %s\n' "$(basename "$(dirname "$command")")" "$(head -1 "$command")" "$result"
    done < <(find "$folder" -path '*/exchange/*.command' | sort)
    [ $count != 0 ] || die "$1 has no files to judge"
    return $failed
}
