#!/usr/bin/env bash
# Per-user registration beside the machine-wide one, in a Wine prefix of the test's own.
# usage: per-user.sh WINE PREFIX WINEARCH ORBEX_DLL PERUSER_CLIENT
# Each step runs regsvr32 and then checks its exit code, where the library's keys stand (the
# current user's classes, the machine's) and whether a client creates Orbex.FileLib from the
# current user's registration alone.
set -uo pipefail
wine=$1 dll=Z:$4 client=$5
source "$(dirname "$0")/wine.sh"
install_prefix "$2" "$3"

# The class keys, the type library's, and an interface's, which the type library functions write.
keys=(
    'Orbex.FileLib'
    'TypeLib\{F26542D0-6021-447E-9A82-DA859119052F}'
    'Interface\{E50CBCD2-B080-4285-9FBF-10FDE5320DA3}'
)
user_state() { key_state "HKCU\\Software\\Classes\\$1" "$wine" reg; }
# In a 64-bit prefix a key in the machine's 32-bit view counts as present too: a per-user
# registration must leave both views alone.
machine_state() {
    if [ "$(key_state "HKLM\\Software\\Classes\\$1" "$wine" reg)" = present ] ||
       { [ "$WINEARCH" = win64 ] &&
         [ "$(key_state "HKLM\\Software\\Classes\\Wow6432Node\\$1" "$wine" reg)" = present ]; }; then
        echo present
    else
        echo absent
    fi
}

"$wine" regsvr32 /s /u "$dll" >/dev/null 2>&1
"$wine" regsvr32 /s /u /n /i:user "$dll" >/dev/null 2>&1

#  regsvr32 arguments | exit | user keys | machine keys | client exit
steps=(
    '/n /i:bogus        | fail | absent    | absent       | 1'
    '/n /i:user         | 0    | present   | absent       | 0'
    '/n /i:USER         | 0    | present   | absent       | 0'
    '                   | 0    | present   | present      | 0'
    '/u /n /i:user      | 0    | absent    | present      | 1'
    '/n /i:user         | 0    | present   | present      | 0'
    '/u                 | 0    | present   | absent       | 0'
    '/u /n /i:user      | 0    | absent    | absent       | 1'
)
for step in "${steps[@]}"; do
    IFS='|' read -r arguments exit_code user machine client_code <<<"$step"
    read -ra arguments <<<"$arguments"
    read -r exit_code user machine client_code <<<"$exit_code $user $machine $client_code"
    name="regsvr32 ${arguments[*]:-(machine)}"
    "$wine" regsvr32 /s "${arguments[@]}" "$dll" >/dev/null 2>&1
    status=$?
    [ "$exit_code" = fail ] && [ $status -ne 0 ] && status=fail
    check "$name: exit code" "$exit_code" "$status"
    for key in "${keys[@]}"; do
        check "$name: $key for the user" "$user" "$(user_state "$key")"
        check "$name: $key for the machine" "$machine" "$(machine_state "$key")"
    done
    "$wine" "$client" Orbex.FileLib >/dev/null 2>&1
    check "$name: client" "$client_code" "$?"
done

[ $failures -eq 0 ] && echo "per-user registration: all steps as expected"
exit $((failures > 0))
