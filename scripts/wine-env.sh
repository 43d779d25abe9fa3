# Sourced by the scripts: one Wine prefix inside the Windows build tree, and one persistent
# wineserver for it. Wine's background processes inherit standard output and error, so they
# are started here with their output sent to files, never from CTest or a pipe.
kel_wine_start() {
    local dir
    dir="$(cd "$1" && pwd)" || return 1
    export WINEPREFIX="$dir/wineprefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
    mkdir -p "$WINEPREFIX"
    wineserver -p </dev/null >"$dir/wineserver.log" 2>&1
    [ -f "$WINEPREFIX/system.reg" ] || echo "Creating the Wine prefix $WINEPREFIX"
    # Also on an existing prefix: the first program of a new wineserver has Wine start the
    # prefix (its service processes among them) here, with their output in a file, instead of
    # inside the first test. Not `wineboot -i`: that runs beside the start-up it triggers and
    # leaves two service control managers, each with services the other does not know.
    wine cmd /c exit </dev/null >"$dir/wineboot.log" 2>&1
}

# Stops only the wineserver of this prefix.
kel_wine_stop() {
    wineserver -k </dev/null >/dev/null 2>&1 || true
}
