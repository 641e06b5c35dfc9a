#!/usr/bin/env bash
# Fuzzes the loader of setup files: `fuzz.sh [SECONDS]`, 60 where nothing is said. It starts from made setups and from
# what earlier runs have found (fuzz/corpus), and leaves both as they are; what breaks is kept as build-fuzz/crash-*.
# With `fuzz.sh --keep` what the last run found is boiled down into fuzz/corpus.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
kept=fuzz/corpus/setup seeds=build-fuzz/seeds found=build-fuzz/corpus
limits=(-timeout=5 -rss_limit_mb=2048 -artifact_prefix=build-fuzz/)
mkdir -p $kept
rm -rf $seeds
build-fuzz/bin/setup_seeds $seeds

if [ "${1:-}" = --keep ]; then
  rm -rf build-fuzz/merged
  cp -r $seeds build-fuzz/merged
  # The fewest files that reach every branch, none longer than a setup with flat curves.
  build-fuzz/bin/fuzz_setup -set_cover_merge=1 -use_counters=0 -max_len=40000 "${limits[@]}" \
    build-fuzz/merged $kept $found
  rm -rf $kept
  mkdir -p $kept
  for file in build-fuzz/merged/*; do
    [ -e "$seeds/${file##*/}" ] || cp "$file" $kept
  done
  exit
fi

rm -rf $found
cp -r $kept $found
build-fuzz/bin/fuzz_setup -dict=fuzz/setup.dict -max_total_time="${1:-60}" -max_len=300000 -print_final_stats=1 \
  "${limits[@]}" $found $seeds
