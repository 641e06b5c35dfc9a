#!/usr/bin/env bash
# Live sound for so many seconds (600) while a host drags a slider, twenty edits a second: drop-outs, and the time of one
# core that it took. Needs jackd2; PERIOD is the server's, in samples at 48 kHz.
#   bench/live_sound.sh [FOLDER OF THE PROGRAMS] [SECONDS]
set -euo pipefail
programs=$(realpath "${1:-build/bin}")
seconds=${2:-600}
folder=$(mktemp -d)
export JACK_DEFAULT_SERVER=live-sound-$$
# Copies, so that the console finds this unit's line and no other.
cp "$programs"/* "$folder" 2>/dev/null || true
mkdir "$folder/ports"
mkfifo "$folder/commands"
jackd -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p "${PERIOD:-512}" >"$folder/jackd.log" 2>&1 &
server=$!
sleep 2
"$folder/veltrana-unit" --link "$folder/ports/COM1" --pace --attached <"$folder/commands" >"$folder/said" &
unit=$!
exec 5>"$folder/commands"
trap 'exec 5>&-; wait $unit; kill $server; wait $server || true; rm -r "$folder"' EXIT
printf '%s\n' "source card system" "output card system" >&5
sleep 2

drag() {
  printf '%s\n' "record bandwidthIndex 3" "record procEnabled 1" "record ohpfEnabled 1" "run 4000"
  local value=200 step=5
  while [ $SECONDS -lt "$seconds" ]; do
    value=$((value + step))
    if [ $value -ge 450 ] || [ $value -le 150 ]; then step=$((-step)); fi
    printf '%s\n' "record ohpfCutoff $value" "run 50"
    sleep 0.05
  done
  echo quit
}
SECONDS=0
drag | "$folder/veltrana-console" >"$folder/host.log"

ticks=$(awk '{print $14 + $15}' /proc/$unit/stat)
for child in $(cat /proc/$unit/task/*/children); do ticks=$((ticks + $(awk '{print $14 + $15}' "/proc/$child/stat"))); done
echo state >&5
sleep 0.5
echo "$(grep -c ohpfCutoff "$folder/host.log") edits in $SECONDS s, $((ticks * 1000 / $(getconf CLK_TCK) / SECONDS)) ms of a core each second"
grep -o '"dropOuts":[0-9]*' "$folder/said" | tail -1
