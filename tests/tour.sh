#!/usr/bin/env bash
# Sends the guided tour through the program's real windows, connected to a simulated unit: tour.sh BUILD. It fails
# where the tour does not find what it expects, and where the unit does not end well.
set -euo pipefail
bin=$1/bin
mkdir -p "$bin/ports"
"$bin/veltrana-unit" --link "$bin/ports/COM1" --pace &
unit=$!
trap 'kill $unit 2>/dev/null || true' EXIT
for _ in $(seq 200); do
  [ -L "$bin/ports/COM1" ] && break
  sleep 0.05
done

QT_QPA_PLATFORM=offscreen "$bin/veltrana-tour"
kill $unit
wait $unit
