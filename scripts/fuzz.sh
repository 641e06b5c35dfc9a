#!/usr/bin/env bash
# Fuzzes all that reads what comes from outside: `fuzz.sh [SECONDS [FUZZER...]]`, 60 where nothing is said, shared
# out evenly. Each fuzzer starts from what earlier runs have found (fuzz/corpus), the one of setup files from made
# setups too, the one of sounds from one of every kind of file, and leaves them as they are; what breaks is kept as
# build-fuzz/FUZZER-crash-*.
# With `fuzz.sh --keep [FUZZER...]` what the last run found is boiled down into fuzz/corpus.
set -euo pipefail
cd "$(dirname "$0")/.."

keep=false seconds=60
if [ "${1:-}" = --keep ]; then keep=true; shift; elif [ $# -gt 0 ]; then seconds=$1; shift; fi
fuzzers=("$@")
[ ${#fuzzers[@]} -gt 0 ] || fuzzers=(setup link session console unit memory sound)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
seeds=build-fuzz/seeds
rm -rf $seeds
mkdir -p $seeds/{link,session,console,unit,memory}
cp -r fuzz/seeds/sound $seeds
build-fuzz/bin/setup_seeds $seeds/setup

# The fewest files that reach every branch, none longer than a setup with flat curves.
boil_down() {
  local name=$1 merged=build-fuzz/merged
  rm -rf $merged
  cp -r $seeds/"$name" $merged
  mkdir -p fuzz/corpus/"$name"
  build-fuzz/bin/fuzz_"$name" -set_cover_merge=1 -use_counters=0 -max_len=40000 "${limits[@]}" $merged \
    fuzz/corpus/"$name" build-fuzz/corpus/"$name"
  rm -r fuzz/corpus/"$name"
  mkdir -p fuzz/corpus/"$name"
  for file in $merged/*; do
    [ -e "$seeds/$name/${file##*/}" ] || cp "$file" fuzz/corpus/"$name"
  done
}

explore() {
  local name=$1 found=build-fuzz/corpus/$1 ways=()
  [ "$name" != setup ] || ways=(-dict=fuzz/setup.dict -max_len=300000)
  rm -rf "$found"
  mkdir -p build-fuzz/corpus
  cp -r fuzz/corpus/"$name" "$found"
  build-fuzz/bin/fuzz_"$name" -max_total_time="$share" -seed=1 -print_final_stats=1 \
    "${ways[@]}" "${limits[@]}" "$found" $seeds/"$name"
}

share=$((seconds >= ${#fuzzers[@]} ? seconds / ${#fuzzers[@]} : 1))
for name in "${fuzzers[@]}"; do
  printf '== %s\n' "$name"
  # Weighing the inputs by what they reach costs half of the time where an input reaches much.
  limits=(-timeout=10 -rss_limit_mb=2048 -entropic=0 -artifact_prefix="build-fuzz/$name-")
  if $keep; then boil_down "$name"; else explore "$name"; fi
done
