#!/bin/sh
# Two runs of the inspector test program under their own X server: the second must show the inspector where the first left it.
set -eu
run_under_xvfb="$(dirname "$0")/../TestSupport/run-under-xvfb.sh"
sh "$run_under_xvfb" "$1" --first
sh "$run_under_xvfb" "$1" --second
