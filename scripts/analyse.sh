#!/usr/bin/env bash
# Runs clang-tidy over what a build folder was made of, but for tests, benchmarks and documents: analyse.sh BUILD.
#
# Most of the time goes into the headers of the system, so sources are analysed as many at a time as the build
# compiles at a time. They are written into one file for that, not included: clang-tidy follows the paths only of
# what stands in the file itself. A complaint names that file; the source is the one of the last #line before.
set -euo pipefail
build=$(realpath "$1")
cd "$(dirname "$0")/.."

joined=$build/analysis
mkdir -p "$joined"
sed "s#$build/\([^\" ]*/Unity/\)#$joined/\1#g" "$build/compile_commands.json" >"$joined/compile_commands.json"

grep -oP '"file": "\K[^"]+' "$build/compile_commands.json" | grep -Ev '/(tests|bench|docs)/' | while read -r file; do
  case $file in
    */Unity/*)
      target=$joined/${file#"$build/"}
      mkdir -p "$(dirname "$target")"
      sed -n 's/^#include "\(.*\)"$/\1/p' "$file" | while read -r source; do
        printf '#line 1 "%s"\n' "$source"
        cat "$source"
      done >"$target"
      printf '%s\n' "$target" ;;
    *) printf '%s\n' "$file" ;;
  esac
done | xargs -P "$(nproc)" -n 1 clang-tidy --quiet --config-file=.clang-tidy -p "$joined" 2>"$joined/clang-tidy.log"
