#!/usr/bin/env bash
# option-list.sh FORM PROGRAM PAGE: writes the manual page FORM to PAGE, with what PROGRAM --help says of its options in the
# place of the line @OPTIONS@.
set -euo pipefail
form=$1 program=$2 page=$3
options=$("$program" --help | sed -nE 's/-/\\-/g; s/^  (\S+( [A-Z:]+)?) +(.*)$/.TP\n.B \1\n\3/p')
[ -n "$options" ]
while IFS= read -r line; do
  if [ "$line" = "@OPTIONS@" ]; then printf '%s\n' "$options"; else printf '%s\n' "$line"; fi
done <"$form" >"$page"
