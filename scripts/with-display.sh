#!/usr/bin/env bash
# Runs a command under a virtual display with a window manager, as a teacher's windows have one.
exec xvfb-run -a -s "-screen 0 1280x900x24" bash -c '
  openbox >/dev/null 2>&1 &
  manager=$!
  "$@"
  status=$?
  kill "$manager" 2>/dev/null
  exit "$status"
' with-display "$@"
