# Sourced by the scripts: the private Wine prefix of one architecture's build tree.
# usage: wine_env i686|x86_64 [BUILD-TREE, default build/<arch>]
# No desktop process: the script host would start one, which waits 10 s for a service that
# does not come up headless, and then holds the caller's output open until it exits itself.
wine_env() {
    local arch=$1
    export WINEPREFIX="$PWD/${2:-build/$arch}/wineprefix"
    export WINEDEBUG=-all
    export WINEDLLOVERRIDES="mscoree,mshtml=;explorer.exe=d"
    if [ "$arch" = i686 ]; then
        export WINEARCH=win32 WINE=/usr/lib/wine/wine
    else
        export WINEARCH=win64 WINE=/usr/lib/wine/wine64
    fi
    mkdir -p "$WINEPREFIX"
}

# Keeps the prefix's Wine server up while the caller works: each Wine start then costs
# milliseconds instead of seconds. Stopped again by stop_wineserver.
# A server that is already up (`wineserver -p` then fails) serves just as well.
start_wineserver() { wineserver -p 2>/dev/null || true; }
stop_wineserver() { wineserver -k 2>/dev/null || true; }
