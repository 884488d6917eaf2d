#!/usr/bin/env bash
# Both builds registered side by side in one 64-bit Wine prefix of the test's own: each by the
# regsvr32 of its bitness into its own registry view, each serving only the script host of its
# bitness. Exit 77 (skipped) without the 32-bit DLL.
# usage: both-bitnesses.sh WINE64 PREFIX ORBEX_DLL_X86_64 ORBEX_DLL_I686 SCRIPT
set -uo pipefail
wine64=$1 dll64=$3 dll32=$4 script=Z:$5
wine32=$(dirname "$wine64")/wine
if [ ! -f "$dll32" ]; then
    echo "no 32-bit Orbex.dll at '$dll32': build the i686 preset first"
    exit 77
fi
source "$(dirname "$0")/wine.sh"
install_prefix "$2" win64

regsvr32() {  # regsvr32 32|64 ARGUMENTS...
    local bits=$1
    shift
    if [ "$bits" = 32 ]; then
        "$wine32" 'C:\windows\syswow64\regsvr32.exe' /s "$@" "Z:$dll32"
    else
        "$wine64" 'C:\windows\system32\regsvr32.exe' /s "$@" "Z:$dll64"
    fi >/dev/null 2>&1
}
# Which build a registry view's Orbex.FileLib names: i686, x86_64 or absent.
view() {  # view 32|64
    local server
    server=$("$wine64" reg query \
        'HKLM\Software\Classes\CLSID\{02728153-EA8F-491C-BD35-578D1E21ACC2}\InprocServer32' /ve "/reg:$1" 2>/dev/null |
        sed -n 's/.*REG_SZ *//p' | tr -d '\r')
    case "$server" in
        "Z:${dll32//\//\\}") echo i686 ;;
        "Z:${dll64//\//\\}") echo x86_64 ;;
        "") echo absent ;;
        *) echo "$server" ;;
    esac
}
host() {  # host 32|64: pass when the script host of that bitness creates and uses Orbex.FileLib
    local output
    if [ "$1" = 32 ]; then
        output=$("$wine32" 'C:\windows\syswow64\cscript.exe' //nologo "$script" 2>/dev/null)
    else
        output=$("$wine64" 'C:\windows\system32\cscript.exe' //nologo "$script" 2>/dev/null)
    fi
    if grep -q ORBEX-SCRIPT-PASSED <<<"$output"; then echo pass; else echo fail; fi
}

# Neither registration outlives the test, whatever happens in it: the per-user test shares the prefix.
trap 'regsvr32 32 /u; regsvr32 64 /u; wineserver -k 2>/dev/null || true' EXIT
regsvr32 32 /u
regsvr32 64 /u

#  regsvr32 | arguments | 32-bit view | 64-bit view | 32-bit host | 64-bit host
steps=(
    '32 |    | i686   | absent | pass | fail'
    '64 |    | i686   | x86_64 | pass | pass'
    '64 | /u | i686   | absent | pass | fail'
    '64 |    | i686   | x86_64 | pass | pass'
    '32 | /u | absent | x86_64 | fail | pass'
    '64 | /u | absent | absent | fail | fail'
)
for step in "${steps[@]}"; do
    IFS='|' read -r bits arguments view32 view64 host32 host64 <<<"$step"
    read -r bits view32 view64 host32 host64 <<<"$bits $view32 $view64 $host32 $host64"
    read -ra arguments <<<"$arguments"
    name="$bits-bit regsvr32 ${arguments[*]:-(register)}"
    regsvr32 "$bits" "${arguments[@]}"
    check "$name: exit code" 0 $?
    check "$name: the 32-bit view" "$view32" "$(view 32)"
    check "$name: the 64-bit view" "$view64" "$(view 64)"
    check "$name: the 32-bit script host" "$host32" "$(host 32)"
    check "$name: the 64-bit script host" "$host64" "$(host 64)"
done
# The type library key, which both views share, goes with the last bitness.
check "the type library key at the end" absent \
    "$(key_state 'HKLM\Software\Classes\TypeLib\{F26542D0-6021-447E-9A82-DA859119052F}' "$wine64" reg)"

[ $failures -eq 0 ] && echo "both bitnesses: all steps as expected"
exit $((failures > 0))
