#!/usr/bin/env bash
# Everything that must hold: builds without warnings, format, static analysis, all tests. Installs what is missing.
set -euo pipefail
cd "$(dirname "$0")"

scripts/install-packages.sh g++ cmake ninja-build ccache qt6-base-dev qt6-svg-dev libcups2-dev fonts-dejavu-core libgtest-dev libgmock-dev \
  libbenchmark-dev pkg-config libcairo2-dev libkissfft-dev libsndfile1-dev libsamplerate0-dev libfftw3-dev nlohmann-json3-dev portaudio19-dev jackd2 libjack-jackd2-dev libebur128-dev python3 clang-format clang-tidy \
  clang libclang-rt-dev cups-daemon cups-client poppler-utils lrzsz \
  desktop-file-utils appstream man-db shared-mime-info gzip libnss-wrapper

step() { printf '\n== %s (%s s)\n' "$1" "$SECONDS"; }

step "Format"
git ls-files -- '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

step "Build"
cmake --preset release
cmake --build --preset release
cmake --preset fuzz
cmake --build --preset fuzz

# Many tests wait for a line or a window. What only computes has that time, and gives way to them.
beside() {
  renice -n 19 "$BASHPID" >/dev/null
  scripts/fuzz.sh --gate >build/fuzz.log 2>&1 || { tail -n 60 build/fuzz.log; return 1; }
  grep -E '^(== |stat::(number|average))' build/fuzz.log
  # The tests and benchmarks are spared, for the time that it takes.
  cmake --preset release -B build/apart -DVELTRANA_JOINED=OFF >build/apart.log || return 1
  scripts/analyse.py build/apart || return 1
  git ls-files -- 'fuzz/*.cpp' | xargs -P "$(nproc)" -n 1 clang-tidy --quiet -p build-fuzz 2>build/clang-tidy-fuzz.log
}

step "Tests, with the fuzzers and the static analysis beside them"
beside >build/beside.log 2>&1 &
others=$!
export QT_QPA_PLATFORM=offscreen
ctest --preset release

step "What the fuzzers and the static analysis say"
wait $others || { cat build/beside.log >&2; exit 1; }
cat build/beside.log

step "All good"
