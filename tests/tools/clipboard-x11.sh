#!/usr/bin/env bash
# The clipboard between keltool (under Wine) and a native X client, both ways, Unicode
# included. Runs inside scripts/with-xvfb.sh; $1 is keltool.exe.
set -u
keltool="$1"
status=0
check() { # what expected actual
    if [ "$2" == "$3" ]; then echo "ok: $1"; else echo "FAILED: $1: expected '$2', got '$3'"; status=1; fi
}
text='Bracket ⌀12 mm – Grüße ✓'
wine "$keltool" clip set "$text"
check "keltool clip set, exit code" 0 $?
check "read by xclip" "$text" "$(timeout 10 xclip -o -selection clipboard)"

text='From X: Ωmega 3D ✓'
printf '%s' "$text" | xclip -i -selection clipboard
got="$(wine "$keltool" clip get | tr -d '\r')"
check "written by xclip, read by keltool clip get" "$text" "$got"
exit $status
