#!/bin/sh
# run-under-xvfb.sh COMMAND...: the command on its own X server, on any free
# display (other test runs may have one too).
# -noreset: a server resets when its last client leaves and refuses whoever
# connects meanwhile (the accessibility bus connects and leaves first).
set -e
export QT_QPA_PLATFORM=xcb QT_STYLE_OVERRIDE=Fusion QT_QPA_PLATFORMTHEME=
if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
    XDG_RUNTIME_DIR="$(mktemp -d)"
    export XDG_RUNTIME_DIR
    trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
fi
xvfb-run -a -s "-screen 0 1280x800x24 -noreset" "$@"
