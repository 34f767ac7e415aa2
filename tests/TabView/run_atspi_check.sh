#!/bin/sh
# run_atspi_check.sh DEMO CHECK: the demo in Xvfb on a private session bus,
# read by an AT-SPI client; 77 (skipped) without the tools.
set -u
for tool in xvfb-run dbus-run-session /usr/bin/python3; do
    command -v "$tool" >/dev/null 2>&1 || { echo "SKIP: $tool is not installed"; exit 77; }
done
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || { echo "SKIP: python3-pyatspi is not installed"; exit 77; }
if [ "${TARN_ATSPI_INNER:-}" != 1 ]; then
    export TARN_ATSPI_INNER=1
    exec sh "$(dirname "$0")/../TestSupport/run-under-xvfb.sh" dbus-run-session -- "$0" "$@"
fi
# Qt registers over AT-SPI only when told accessibility is always on.
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=0
unset QT_ACCESSIBILITY_DISABLED QT_STYLE_OVERRIDE
"$1" 60 &
/usr/bin/python3 "$2" tabview-atspi-demo Circle Square Star
status=$?
kill $! 2>/dev/null
exit $status
