#!/usr/bin/env bash
# check_library.sh glimmerpad.dll: the library as it ships is 32-bit, exports exactly its two functions, undecorated,
# needs nothing but Windows' own libraries, loads at its start only those that it needs then, and lets the system move it
# and keep its data from being run. It and the programs beside it say for which Windows they are, and the launcher that
# it can use four gigabytes.
set -euo pipefail
library=$1
headers=$(LC_ALL=C i686-w64-mingw32-objdump -p "$library")
failed=0
complain() { echo "$(basename "$library"): $*" >&2; failed=1; }

grep -q 'file format pei-i386' <<<"$headers" || complain "is not a 32-bit library"
grep -q DYNAMIC_BASE <<<"$headers" || complain "cannot be moved in memory (ASLR)"
grep -q NX_COMPAT <<<"$headers" || complain "its data can be executed (DEP)"

# The name table of the exports: "[   0] +base[   1]  0000 initLibrary" in recent binutils, "[   0] initLibrary" before.
exports=$(sed -n '/Ordinal\/Name Pointer/,/^$/p' <<<"$headers" | sed -nE 's/^\s*\[ *[0-9]+\].* ([^ ]+)$/\1/p' | sort | xargs)
[ "$exports" = "initLibrary runZKApplication" ] || complain "exports: $exports"

# Those that cmake/libraries.cmake lets wait for their first use are not among what is loaded at the start.
for name in comdlg32 oleacc wininet winmm winspool.drv; do
    ! grep -qi "DLL Name: ${name%.drv}[.]" <<<"$headers" || complain "loads $name at its start"
done

own=" advapi32 comctl32 comdlg32 crypt32 dwmapi gdi32 gdiplus imm32 kernel32 mapi32 mpr msimg32 msvcrt ole32 oleacc \
oleaut32 psapi rpcrt4 shell32 shlwapi user32 uuid uxtheme version winhttp wininet winmm winspool.drv ws2_32 wsock32 "
for name in $(sed -nE 's/^\s*DLL Name: (.*)$/\L\1/p' <<<"$headers"); do
    [[ $own == *" ${name%.dll} "* ]] || complain "needs $name"
done
# For older systems than these (Windows 7) the system makes up window metrics of their time.
for program in "$library" "$(dirname "$library")"/{demo_host,glimmerpad}.exe; do
    headers=$(LC_ALL=C i686-w64-mingw32-objdump -p "$program")
    version=$(awk '/^M(aj|in)or(OSystem|Subsystem)Version/ { printf "%s.", $2 }' <<<"$headers")
    [ "$version" = 6.1.6.1. ] || complain "$(basename "$program") is for system and subsystem $version"
done
# Those of the last one.
grep -q 'large address aware' <<<"$headers" || complain "the launcher has two gigabytes only"
[ $failed = 0 ] && echo "$(basename "$library"): exports, imports and protections are as they should be"
exit $failed
