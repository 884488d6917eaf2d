# Sourced by the install tests: runs Wine in the test's own prefix, with its server kept up for
# the test's length and stopped at its end, so that no Wine process outlives the test.
# usage: install_prefix PREFIX WINEARCH
install_prefix() {
    export WINEPREFIX=$1 WINEARCH=$2 WINEDEBUG=-all
    export WINEDLLOVERRIDES="mscoree,mshtml=;explorer.exe=d"
    wineserver -p </dev/null >/dev/null 2>&1 || true
    trap 'wineserver -k 2>/dev/null || true' EXIT
}

failures=0
check() {  # check DESCRIPTION EXPECTED ACTUAL
    if [ "$2" != "$3" ]; then
        echo "FAILED: $1: expected $2, got $3"
        failures=$((failures + 1))
    fi
}

# Whether a registry key exists: "present" or "absent". REG is the reg.exe command line to use.
key_state() {  # key_state KEY REG...
    local key=$1
    shift
    if "$@" query "$key" >/dev/null 2>&1; then echo present; else echo absent; fi
}
