#!/bin/sh
# Runs a test program on its own X server, on any free display (other test runs may have one too).
set -e
export QT_QPA_PLATFORM=xcb QT_STYLE_OVERRIDE=Fusion QT_QPA_PLATFORMTHEME=
export XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-$(mktemp -d)}"
exec xvfb-run -a -s "-screen 0 1280x800x24 -noreset" "$@"
