#!/usr/bin/env bash
# How many branches the tests take of what must not fail: the loader and writer of setups, the codecs, the link, and the
# keeping of the last state. `coverage.sh` prints a table; `coverage.sh FILE...` the conditions in these files of which
# one side was never taken, with how often each side was.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh cmake ninja-build clang llvm libclang-rt-dev python3 libgtest-dev libgmock-dev \
  libbenchmark-dev pkg-config libcairo2-dev libkissfft-dev libsndfile1-dev libsamplerate0-dev libfftw3-dev nlohmann-json3-dev portaudio19-dev libebur128-dev
build=build-coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage >$build/build.log || { tail -n 40 $build/build.log >&2; exit 1; }

# What a test has reached counts whether it passes or not: one that is timed may fail in a build that counts.
rm -rf $build/profiles
export LLVM_PROFILE_FILE="$PWD/$build/profiles/%m-%p.profraw"
tests=(text link persist shell host model)
for test in "${tests[@]}"; do
  $build/tests/test_"$test" >$build/"$test".log || grep 'FAILED  \]' $build/"$test".log | sort -u >&2
done
llvm-profdata merge -sparse -o $build/all.profdata $build/profiles/*.profraw

objects=()
for test in "${tests[@]}"; do objects+=(-object $build/tests/test_"$test"); done
objects+=(-instr-profile=$build/all.profdata)

llvm-cov export "${objects[@]:1}" -format=text >$build/coverage.json 2>$build/coverage.log
scripts/branches.py $build/coverage.json "$@"
