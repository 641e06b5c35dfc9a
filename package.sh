#!/usr/bin/env bash
# Makes the Debian package: build/package/veltrana_VERSION_ARCHITECTURE.deb. Installs what it needs for that.
set -euo pipefail
cd "$(dirname "$0")"

scripts/install-packages.sh g++ cmake ninja-build qt6-base-dev qt6-svg-dev libcups2-dev fonts-dejavu-core libgtest-dev libgmock-dev libbenchmark-dev \
  pkg-config libcairo2-dev libkissfft-dev libsndfile1-dev libsamplerate0-dev libfftw3-dev nlohmann-json3-dev portaudio19-dev libebur128-dev \
  dpkg-dev file gzip
cmake --preset release >/dev/null
cmake --build --preset release --target shipped
rm -rf build/package
cpack --config build/CPackConfig.cmake >build/package.log 2>&1 || { cat build/package.log >&2; exit 1; }
ls build/package/*.deb
