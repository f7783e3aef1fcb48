#!/usr/bin/env bash
# sign.sh FILE...: signs Windows programs in place. From the environment:
#   GLIMMERPAD_CERTIFICATE           certificate and key, a PKCS #12 file
#   GLIMMERPAD_CERTIFICATE_PASSWORD  its password, if it has one
#   GLIMMERPAD_TIMESTAMP             address of a time stamping service; without it a signature ends with its certificate
set -euo pipefail
options=(-pkcs12 "$GLIMMERPAD_CERTIFICATE" -h sha256 -n Glimmerpad)
[ -z "${GLIMMERPAD_TIMESTAMP-}" ] || options+=(-ts "$GLIMMERPAD_TIMESTAMP")
for file in "$@"; do
    rm -f "$file.signed"
    # The password is no argument: those can be read by everybody on the machine.
    osslsigncode sign "${options[@]}" -readpass <(printf %s "${GLIMMERPAD_CERTIFICATE_PASSWORD-}") \
        -in "$file" -out "$file.signed" >&2
    chmod --reference="$file" "$file.signed"
    mv "$file.signed" "$file"
done
