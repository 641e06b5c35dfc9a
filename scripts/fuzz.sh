#!/usr/bin/env bash
# Fuzzes all that reads what comes from outside: `fuzz.sh [SECONDS [FUZZER...]]`, 60 where nothing is said, shared
# out evenly. Each fuzzer starts from what earlier runs have found (fuzz/corpus), those of setups and of the files of
# one filter from made ones too, the one of sounds from one of every kind of file, and leaves them as they are; what
# breaks is kept as build-fuzz/FUZZER-crash-*.
# With `fuzz.sh --gate [FUZZER...]` each runs as many inputs as `gate_runs` has for it, the same ones at every run and on
# every machine, so that a change is stopped by what it breaks and by nothing else: the same seed, the starting inputs in
# the order of their names, and nothing weighed by time. In what is compiled no branch hangs on an address: hence the
# preset's -fno-sanitize=vptr, which looks types up by theirs. All of them together take about a minute of one core; one
# that has not come to its end within ten minutes has failed.
# With `fuzz.sh --keep [FUZZER...]` what the last run found is boiled down into fuzz/corpus.
set -euo pipefail
cd "$(dirname "$0")/.."

declare -A gate_runs=([setup]=4000 [indiv]=8000 [link]=8000 [session]=1500 [console]=1000 [firmware]=6000 [unit]=15000 [bootrom]=3000 [memory]=50000 [sound]=5000)

way=explore seconds=60
case ${1:-} in
  --gate) way=gate; shift ;;
  --keep) way=boil_down; shift ;;
  ?*) seconds=$1; shift ;;
esac
fuzzers=("$@")
[ ${#fuzzers[@]} -gt 0 ] || fuzzers=(setup indiv link session console firmware unit bootrom memory sound)

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
seeds=build-fuzz/seeds
rm -rf $seeds
mkdir -p $seeds/{link,session,console,firmware,unit,bootrom,memory}
cp -r fuzz/seeds/sound $seeds
build-fuzz/bin/setup_seeds $seeds/setup $seeds/indiv

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
  local name=$1 found=build-fuzz/corpus/$1
  rm -rf "$found"
  mkdir -p build-fuzz/corpus
  cp -r fuzz/corpus/"$name" "$found"
  build-fuzz/bin/fuzz_"$name" -max_total_time="$share" -seed=1 -print_final_stats=1 \
    "${ways[@]}" "${limits[@]}" "$found" $seeds/"$name"
}

gate() {
  local name=$1 status=0
  find fuzz/corpus/"$name" $seeds/"$name" -type f | LC_ALL=C sort | paste -sd, >build-fuzz/"$name".seeds
  timeout 600 build-fuzz/bin/fuzz_"$name" -runs="${gate_runs[$name]}" -seed=1 -shuffle=0 -print_final_stats=1 \
    "${ways[@]}" "${limits[@]}" -timeout=60 -seed_inputs=@build-fuzz/"$name".seeds || status=$?
  [ $status -ne 124 ] || echo "$name has not come to its end within ten minutes" >&2
  return $status
}

share=$((seconds >= ${#fuzzers[@]} ? seconds / ${#fuzzers[@]} : 1))
for name in "${fuzzers[@]}"; do
  printf '== %s\n' "$name"
  # Weighing the inputs by what they reach costs half of the time where an input reaches much.
  limits=(-timeout=10 -rss_limit_mb=2048 -entropic=0 -artifact_prefix="build-fuzz/$name-")
  ways=()
  [[ $name != setup && $name != indiv ]] || ways=(-dict=fuzz/setup.dict -max_len=300000)
  $way "$name"
done
