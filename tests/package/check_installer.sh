#!/usr/bin/env bash
# check_installer.sh: the installer, run silently under Wine, installs what the package holds, and its uninstaller
# leaves files and registry as they were: for one user and for all, with and without what can be chosen, and in a folder
# with somebody else's files. A program that runs is neither replaced nor removed. All is signed, with a certificate that
# nobody but this test trusts.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
prefix=$root/build/wine
work=$root/build/check_installer
export WINEDEBUG=-all
failed=0
complain() { echo "installer: $*" >&2; failed=1; }
in_wine() { timeout 60 "$root/dev" wine "$@" </dev/null; }

rm -rf "$work"
mkdir -p "$work"
# shellcheck disable=SC2016
export GLIMMERPAD_CERTIFICATE=$work/certificate.p12 GLIMMERPAD_CERTIFICATE_PASSWORD='a "secret" $one'
openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=Nobody -addext extendedKeyUsage=codeSigning \
    -keyout "$work/key.pem" -out "$work/certificate.pem" 2>"$work/openssl.log"
openssl pkcs12 -export -inkey "$work/key.pem" -in "$work/certificate.pem" -out "$GLIMMERPAD_CERTIFICATE" \
    -passout env:GLIMMERPAD_CERTIFICATE_PASSWORD
mapfile -t packages < <(GLIMMERPAD_PACKAGE=$work/package "$root/dev" package 2>"$work/package.log")
staged=${packages[0]%.zip}
installer=${packages[1]}
# Under Wine everybody is an administrator. This one is so only after having asked for it.
asking=$work/package/asking-setup.exe
root=$root bash -c 'source "$root/tools/package.sh" && make_installer "$@"' - "$staged" "$asking" -DPRETEND_USER 2>>"$work/package.log"

expect_signed() {
    local file
    for file in "$@"; do
        osslsigncode verify -CAfile "$work/certificate.pem" -in "$file" >"$work/verify.log" 2>&1 ||
            complain "the signature of $file is not good"
    done
}
expect_signed "$staged"/glimmerpad.{exe,dll} "$installer"

# Every file of the prefix but those the system itself changes, and the registry's two keys for programs as text.
snapshot() {
    (cd "$prefix/drive_c" && find . \( -path './windows/temp' -o -path '*/Temp' -o -path './users/*/AppData/*/Glimmerpad*' \
        -o -path './users/*/Pictures' \) -prune -o -print | sort) >"$work/$1.files"
    local key
    for key in CURRENT_USER LOCAL_MACHINE; do
        in_wine regedit /E "Z:${work//\//\\}\\$1.$key.reg" "HKEY_$key\\Software" >/dev/null
        # Each line with its key before it, less what Wine itself notes down when its services find the time.
        iconv -f UTF-16 -t UTF-8 "$work/$1.$key.reg" | tr -d '\r' |
            awk '/^\[/ { key = $0 } NF { print key, $0 }' |
            grep -vE '^\[HKEY_[A-Z_]+\\Software\\(Wine\\Temporary|Microsoft\\Windows NT\\)' >"$work/$1.$key"
    done
}

expect_as_before() {
    local part
    for part in files CURRENT_USER LOCAL_MACHINE; do
        diff "$work/before.$part" "$work/$1.$part" >"$work/$1.$part.diff" || {
            complain "$1: $part differ from before:"
            head -20 "$work/$1.$part.diff" >&2
        }
    done
}

# The folder holds what the package holds, byte for byte, the uninstaller, and once it ran, the user's settings.
expect_installed() {
    diff -r "$staged" "$1" | grep -vE "^Only in $1: (uninstall.exe|zk_settings.ini)\$" >"$work/installed.diff" || true
    [ ! -s "$work/installed.diff" ] || { complain "not what was packed:"; head -20 "$work/installed.diff" >&2; }
    [ -f "$1/uninstall.exe" ] || complain "no uninstaller in $1"
}

# The uninstaller goes on from a copy of itself; it is done when its file is gone.
uninstall() {
    in_wine "$1/uninstall.exe" /S || complain "uninstalling answered $?"
    local tries=0
    while [ -e "$1/uninstall.exe" ] && [ $tries -lt 100 ]; do
        sleep 0.2
        tries=$((tries + 1))
    done
    # Its last step is the folder.
    sleep 0.5
}

value() { in_wine reg query "$1" "${@:2}" 2>/dev/null | tr -d '\r' | sed -nE 's/^ +.* REG_SZ +//p'; }

in_wine reg add 'HKLM\Software\Classes\.gmp' /ve /d Somebody.Else /f >/dev/null
# As for a user who never installed anything.
windows='Software\Microsoft\Windows\CurrentVersion'
for key in 'App Paths' Uninstall; do
    in_wine reg delete "HKCU\\$windows\\$key" /f >/dev/null 2>&1 || true
done
# These the system has.
for key in Run 'Explorer\StartupApproved\Run'; do in_wine reg add "HKCU\\$windows\\$key" /f >/dev/null; done
mkdir -p "$prefix/drive_c/users/$(id -un)/AppData/Local/Programs"
snapshot before

# For this user, in a folder of the installer's choice.
in_wine "$installer" /S || complain "installing answered $?"
folder=$(find "$prefix/drive_c/users" -maxdepth 5 -path '*/Programs/Glimmerpad' -type d)
if [ -z "$folder" ]; then
    complain "nothing was installed for the user"
    exit 1
fi
expect_installed "$folder"
[ -n "$(value "HKCU\\$windows\\Uninstall\\Glimmerpad" /v DisplayVersion)" ] ||
    complain "the system does not know how to uninstall"
[ "$(value 'HKLM\Software\Classes\.gmp' /ve)" = Somebody.Else ] || complain "files were associated without being asked"
expect_signed "$folder/uninstall.exe"
# The user lets it start with the system, and looks at that in the task manager.
windows_folder=$(value "HKCU\\$windows\\Uninstall\\Glimmerpad" /v InstallLocation)
for key in Run 'Explorer\StartupApproved\Run'; do
    in_wine reg add "HKCU\\$windows\\$key" /v Glimmerpad /d "\"$windows_folder\\glimmerpad.exe\" -TRAY" /f >/dev/null
done

# The program runs from there, and while it does nothing is taken away from under it.
in_wine "$folder/glimmerpad.exe" &
program=$!
for _ in $(seq 100); do
    in_wine tasklist 2>/dev/null | grep -qi glimmerpad.exe && break
    kill -0 $program 2>/dev/null || break
    sleep 0.1
done
sleep 1
kill -0 $program 2>/dev/null || complain "the installed program does not run"
in_wine "$installer" /S && complain "the installer replaces a program that runs"
in_wine "$folder/glimmerpad.exe" -TERMINATE || true
wait $program || true
expect_installed "$folder"
echo "the user's own" >"$folder/notes.txt"
uninstall "$folder"
[ "$(ls "$folder" | xargs)" = "notes.txt zk_settings.ini" ] || complain "left of the user's own files: $(ls "$folder")"
rm -rf "$folder"
snapshot user
expect_as_before user

# For all users, with everything that can be chosen.
folder="$prefix/drive_c/Program Files/Glimmerpad"
in_wine "$asking" /S /ALLUSERS /ASSOCIATE /DESKTOP || complain "installing answered $?"
expect_installed "$folder"
[ "$(value 'HKLM\Software\Classes\.gmp' /ve)" = Glimmerpad.Project ] || complain "project files are not associated"
[ -n "$(find "$prefix/drive_c/users" -path '*Desktop/Glimmerpad.lnk')" ] || complain "no link on the desktop"
[ "$(value 'HKLM\Software\RegisteredApplications' /v Glimmerpad)" = 'Software\Glimmerpad\Capabilities' ] ||
    complain "the system's list of programs for project files does not know it"
uninstall "$folder"
snapshot all
expect_as_before all

# Beside somebody else's files, in a folder that everybody may write to.
mkdir -m 777 "$prefix/drive_c/tools"
echo "somebody else's" >"$prefix/drive_c/tools/README.md"
folder=$prefix/drive_c/tools/Glimmerpad
in_wine "$asking" /S /ALLUSERS '/D=C:\tools' || complain "installing answered $?"
expect_installed "$folder"
# Once more over it: each file is a new one, with the folder's rights.
chmod 666 "$folder"/{glimmerpad.dll,uninstall.exe}
in_wine "$asking" /S /ALLUSERS '/D=C:\tools\Glimmerpad' || complain "installing once more answered $?"
expect_installed "$folder"
[ -z "$(find "$folder" -maxdepth 1 -perm /o+w)" ] || complain "everybody may change what everybody runs"
uninstall "$folder"
[ "$(cd "$prefix/drive_c/tools" && echo *)" = README.md ] || complain "somebody else's files are gone, or ours are left"
# A user's own files of our names, which the user could change later: for all users they are nobody's installation.
mkdir "$folder"
for file in uninstall.exe glimmerpad.dll another.dll; do
    echo "a user's" >"$folder/$file"
    in_wine "$asking" /S /ALLUSERS '/D=C:\tools\Glimmerpad' && complain "for all users it was installed around $file"
    [ "$(cat "$folder"/* | sort -u)" = "a user's" ] || complain "$file was replaced"
    [ $file = uninstall.exe ] || rm "$folder/$file"
done
rm -r "$folder"
mkdir "$folder"
echo "somebody else's" >"$folder/README.md"
in_wine "$installer" /S '/D=C:\tools\Glimmerpad' && complain "installed over somebody else's files"
[ "$(cat "$folder"/*)" = "somebody else's" ] || complain "somebody else's file was replaced"
rm -r "$prefix/drive_c/tools"
snapshot tools
expect_as_before tools

in_wine reg delete 'HKLM\Software\Classes\.gmp' /f >/dev/null
[ $failed = 0 ] && echo "installer: installs, runs and goes without a trace"
exit $failed
