#!/usr/bin/env bash
# Sets up, builds, and runs the desktop program connected to a simulated unit. On a machine without a display it
# sends the program through a short tour offscreen instead, and ends by itself.
set -euo pipefail
cd "$(dirname "$0")"

# The build is configured as a whole, tests and benchmarks with it.
scripts/install-packages.sh g++ cmake ninja-build qt6-base-dev qt6-svg-dev libcups2-dev fonts-dejavu-core libgtest-dev libgmock-dev libbenchmark-dev \
  pkg-config libcairo2-dev libkissfft-dev libsndfile1-dev libsamplerate0-dev libfftw3-dev nlohmann-json3-dev portaudio19-dev libebur128-dev
cmake --preset release >/dev/null
cmake --build --preset release --target veltrana veltrana-unit veltrana-console veltrana-tour

bin=build/bin
mkdir -p $bin/ports
$bin/veltrana-unit --link $bin/ports/COM1 --pace --memories build/unit-memories.txt --trace build/unit-trace.txt &
unit=$!
trap 'kill $unit 2>/dev/null; wait $unit 2>/dev/null || true' EXIT
for _ in $(seq 100); do
  [ -L $bin/ports/COM1 ] && break
  kill -0 $unit 2>/dev/null || { echo "The simulated unit did not start" >&2; exit 1; }
  sleep 0.05
done

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  $bin/veltrana
else
  echo "No display here: the desktop program makes its tour offscreen."
  QT_QPA_PLATFORM=offscreen $bin/veltrana-tour
  echo "The pictures are in build/tour, what the unit heard and said in build/unit-trace.txt"
fi
