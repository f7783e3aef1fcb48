#!/usr/bin/env bash
# check_test_package.sh: the package of tests, unpacked on a system that never saw any of this and started by its own
# script, runs what it is asked to, ends what hangs, brings its results along, and changes nothing outside its folder.
# The answers of facts.exe are those that docs/windows.md has for Wine; what tests left to be judged is judged.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
work=$root/build/check_tests
failed=0
complain() { echo "test package: $*" >&2; failed=1; }

[ -e "$work/prefix" ] && WINEPREFIX=$work/prefix /usr/lib/wine/wineserver --kill || true
rm -rf "$work"
mkdir -p "$work/prefix"
package=$("$root/dev" package tests 2>"$work/package.log") || { cat "$work/package.log" >&2; exit 1; }
"$root/dev" wine winver.exe </dev/null >/dev/null 2>&1 & # the display is up as soon as a program of it runs
read -r display _ < <(while ! cat "$root/build/display" 2>/dev/null; do sleep 0.1; done)
kill $! 2>/dev/null || true

export WINEPREFIX=$work/prefix WINEARCH=win32 WINEDEBUG=-all DISPLAY=:$display HOME=$work/home LC_ALL=C.UTF-8
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe=d"
mkdir -p "$HOME"
in_wine() { timeout 120 /usr/lib/wine/wine "$@" </dev/null; }
trap '/usr/lib/wine/wineserver --kill' EXIT
in_wine wineboot --init >"$work/wineboot.log" 2>&1
for link in "$WINEPREFIX"/drive_c/users/*/*; do
    [ ! -L "$link" ] || { rm "$link" && mkdir "$link"; }
done
# Windows without a manager of windows take two seconds each otherwise.
in_wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >/dev/null

folder=$WINEPREFIX/drive_c/gp-tests
unzip -q "$package" -d "$WINEPREFIX/drive_c"
# A program that goes on too long.
printf 'endless 3 facts results\\endless.txt --seconds-for-the-wheel 100\r\n' >>"$folder/tests/order.txt"

# Registry and files once all is written. Of the registry without the times of its keys; of the files without the system's
# own temporary ones. Displays and monitors Wine lists anew for each program.
snapshot() {
    /usr/lib/wine/wineserver --wait
    (cd "$WINEPREFIX" && find . \( -path ./drive_c/gp-tests -o -path './drive_c/windows/temp' -o -name '*.reg' \
        -o -path './.update-timestamp' \) -prune -o -type f -printf '%p %s %T@\n' | sort) >"$work/$1.files"
    cat "$WINEPREFIX"/{user,system,userdef}.reg | awk '/^\[/ { key = $1 } NF && !/^#|^\[/ { print key, $0 }' |
        grep -vF 'System\\CurrentControlSet\\Control\\Class\\{4D36E9' | sort >"$work/$1.registry"
}
snapshot before
result=0
# As on somebody's own account, without the readers of this system.
GLIMMERPAD_TEST_MACHINE=0 GLIMMERPAD_EXCHANGE=1 GTEST_FILTER=-*ADriveThatIsPulledOut \
    in_wine cmd /c 'C:\gp-tests\run-tests.cmd' --yes --quiet facts common_tests host_core_tests saver_test endless \
    >"$work/run.log" 2>&1 || result=$?
snapshot after
for part in files registry; do
    diff "$work/before.$part" "$work/after.$part" >"$work/$part.diff" || {
        complain "$part differ from before:"
        head -20 "$work/$part.diff" >&2
    }
done

[ $result = 1 ] || complain "a program that was ended is no failure: $result"
unzip -q "$folder/results.zip" -d "$work" || complain "no results"
for line in 'PASS +facts ' 'PASS +common_tests .* passed' 'PASS +host_core_tests ' 'PASS +saver_test .* passed, [1-9][0-9]* skipped' \
    'TIMEOUT +endless ' 'PASS 4, FAIL 0, SKIP 0, TIMEOUT 1'; do
    grep -qE "^$line" "$work/results/summary.txt" || complain "the summary lacks $line"
done
[ $failed = 0 ] || cat "$work/run.log" >&2
identify -regard-warnings "$work/results/endless.png" >/dev/null || complain "no picture of what hung"
[ ! -e "$work/results/user" ] || complain "results.zip holds the folders that stood for the user's"

# Each row of the table: `key` | what Wine answers | what Windows does. "*": not the same each time.
sed -nE 's/^\| `([a-z0-9.-]+)` \| ([^|]+) \| [^|]+ \| [^|]+ \|$/\1 = \2/p' "$root/docs/windows.md" | grep -v ' = \*$' | sed 's/ *$//' |
    sort >"$work/expected.facts"
tr -d '\r' <"$work/results/facts.txt" | grep -Ff <(sed 's/=.*/=/' "$work/expected.facts") | sort >"$work/seen.facts"
diff "$work/expected.facts" "$work/seen.facts" >&2 || complain "the facts (>) are not those of docs/windows.md (<)"
[ "$(wc -l <"$work/expected.facts")" -ge 20 ] || complain "docs/windows.md has no table of facts"

"$root/dev" exchange "$folder/results.zip" >"$work/exchange.txt" 2>&1 || { complain "judged:"; cat "$work/exchange.txt" >&2; }
[ "$(grep -c ' PASS$' "$work/exchange.txt")" -ge 7 ] || complain "too few files to judge"
# One that is damaged on its way is found.
(cd "$work" && printf 'x' | dd of="$(find results/exchange -name a.png)" bs=1 seek=60 conv=notrunc status=none &&
    zip -q -r damaged.zip results/exchange)
"$root/dev" exchange "$work/damaged.zip" >"$work/damaged.txt" 2>&1 && complain "a damaged picture does not count"
grep -qE "identify .*a\.p.* FAIL" "$work/damaged.txt" || complain "a damaged picture passes"

# The description of a sandbox is well-formed and names the folder as it stands.
in_wine cmd /c 'C:\gp-tests\run-in-sandbox.cmd' quiet >/dev/null 2>&1 || true
python3 - "$folder/sandbox.wsb" <<'PYTHON' || complain "sandbox.wsb is not what it should be"
import sys, xml.etree.ElementTree as tree
folders = [f.text for f in tree.parse(sys.argv[1]).iter("HostFolder")]
sys.exit(folders != ["C:\\gp-tests", "C:\\gp-tests\\results-of-the-sandbox"])
PYTHON
[ $failed = 0 ] && echo "test package: runs on a fresh system, and leaves it as it was"
exit $failed
