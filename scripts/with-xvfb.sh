#!/usr/bin/env bash
# with-xvfb.sh SHOTS_DIR COMMAND...: runs COMMAND with DISPLAY set to a private Xvfb server on
# a free display number, and stops that server afterwards. While COMMAND runs, a Windows test
# under Wine can ask for a screenshot (Wine runs no native programs): it writes a file
# NAME.request into SHOTS_DIR, and this script saves the screen as SHOTS_DIR/NAME.png with
# ImageMagick's import, then removes the request. Wine runs in a prefix of its own inside
# SHOTS_DIR.
set -u
shots="$1"
shift
mkdir -p "$shots"
display=
for n in $(seq 90 189); do
    if [ ! -e "/tmp/.X$n-lock" ] && [ ! -e "/tmp/.X11-unix/X$n" ]; then
        Xvfb ":$n" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
        xvfb=$!
        for _ in $(seq 50); do
            [ -e "/tmp/.X11-unix/X$n" ] && { display=":$n"; break; }
            kill -0 "$xvfb" 2>/dev/null || break
            sleep 0.1
        done
        [ -n "$display" ] && break
        kill "$xvfb" 2>/dev/null
    fi
done
[ -n "$display" ] || { echo "with-xvfb.sh: no X display could be started" >&2; exit 1; }
export DISPLAY="$display"

# Wine chooses its display driver in the desktop process of a prefix, once: the build's prefix
# may have started it without a display. The tests here get a prefix of their own, whose
# desktop starts on this display, with its own wineserver, stopped at the end.
source "$(dirname "$0")/wine-env.sh"
kel_wine_start "$shots"

(
    while kill -0 "$xvfb" 2>/dev/null; do
        for request in "$shots"/*.request; do
            [ -e "$request" ] || continue
            name="${request%.request}"
            import -window root "png:$name.png.part" 2>/dev/null && mv "$name.png.part" "$name.png"
            rm -f "$request"
        done
        sleep 0.1
    done
) &
watcher=$!

"$@"
status=$?
kel_wine_stop
kill "$xvfb" "$watcher" 2>/dev/null
wait "$xvfb" "$watcher" 2>/dev/null
exit $status
