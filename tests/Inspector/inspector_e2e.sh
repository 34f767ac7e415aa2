#!/bin/sh
# Two runs of the inspector test program under their own X server: the second must show the inspector where the first left it.
set -eu
export XDG_RUNTIME_DIR="$(mktemp -d)" QT_QPA_PLATFORM=xcb QT_STYLE_OVERRIDE=Fusion QT_QPA_PLATFORMTHEME=
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
xvfb-run -a -s "-screen 0 1280x800x24 -noreset" "$1" --first
xvfb-run -a -s "-screen 0 1280x800x24 -noreset" "$1" --second
