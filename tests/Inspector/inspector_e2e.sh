#!/bin/sh
# Runs the inspector test program's end-to-end mode twice under its own X
# server: the second process must find the inspector where the first left it.
set -eu
helper="$1"
state=$(mktemp -d)
trap 'rm -rf "$state"' EXIT
mkdir -p "$state/runtime"
chmod 700 "$state/runtime"
export XDG_RUNTIME_DIR="$state/runtime"
export QT_QPA_PLATFORM=xcb
export QT_STYLE_OVERRIDE=Fusion
export QT_QPA_PLATFORMTHEME=
xvfb-run -a -s "-screen 0 1280x800x24" "$helper" --first "$state/frame"
xvfb-run -a -s "-screen 0 1280x800x24" "$helper" --second "$state/frame"
