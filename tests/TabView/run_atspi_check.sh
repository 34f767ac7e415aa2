#!/bin/sh
# Starts the demo in a real X server (Xvfb) on a private session bus with
# the accessibility bus, and reads its tree with an AT-SPI client.
# Usage: run_atspi_check.sh DEMO_PROGRAM CHECK_SCRIPT
# Exits 77 (skipped) when the tools are not installed.
set -u
demo=$1
check=$2
for tool in xvfb-run dbus-run-session /usr/bin/python3; do
    command -v "$tool" >/dev/null 2>&1 || { echo "SKIP: $tool is not installed"; exit 77; }
done
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || { echo "SKIP: python3-pyatspi is not installed"; exit 77; }

if [ "${TARN_ATSPI_INNER:-}" != 1 ]; then
    export TARN_ATSPI_INNER=1
    exec xvfb-run -a -s "-screen 0 1024x768x24" dbus-run-session -- "$0" "$@"
fi

# Inside Xvfb and the session bus. Qt registers over AT-SPI only when it
# is told accessibility is always on; the offscreen platform exposes nothing.
export QT_QPA_PLATFORM=xcb
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
export NO_AT_BRIDGE=0
unset QT_ACCESSIBILITY_DISABLED QT_STYLE_OVERRIDE
"$demo" 60 &
demo_pid=$!
/usr/bin/python3 "$check" tabview-atspi-demo Circle Square Star
status=$?
kill "$demo_pid" 2>/dev/null
wait "$demo_pid" 2>/dev/null
exit $status
