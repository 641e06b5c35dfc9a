#!/usr/bin/env bash
# The unit beside what else takes noise out of a recording, over the same recordings at the unit's usual rate. Prints for
# each recording and tool the gain in scale-invariant signal-to-distortion ratio (dB) and the intelligibility STOI of the
# output. Installs what it needs. What the table means is told in docs/sound-comparison.md.
#
#   bench/compare/compare.sh [BUILD]     BUILD: a build folder, instead of the release build
set -euo pipefail
cd "$(dirname "$0")/../.."

scripts/install-packages.sh g++ cmake ninja-build libgtest-dev libbenchmark-dev pkg-config libkissfft-dev libsndfile1-dev \
  libsamplerate0-dev libfftw3-dev libspeexdsp-dev sox ffmpeg espeak-ng
build=${1:-build}
if [ "$build" = build ]; then cmake --preset release >/dev/null; else cmake "$build" >/dev/null; fi
cmake --build "$build" --target compare >"$build/compare.log" || { cat "$build/compare.log" >&2; exit 1; }

rate=12000 lead=2   # Hz; seconds without speech at the beginning (CompareRecording.cpp)
work=$build/compare
bin=$PWD/$build/bench
rm -rf "$work"
mkdir -p "$work"
cd "$work"

# ---- The speech: two voices by turns, with pauses.

sentences=(
  "The train to the harbour leaves from the second platform at twenty past nine."
  "She asked him twice whether the door had been locked before midnight."
  "Nobody in the office remembered who had signed for the parcel."
  "Please bring the blue folder, and leave the keys on the kitchen table."
  "We heard a car stop outside, and then somebody whistled."
  "If the weather holds, they will finish the roof by Thursday."
  "He paid in cash and did not wait for the change."
  "The two of them met again at the bridge, shortly after the rain began."
  "I think that the second number on the list is wrong."
  "Call me as soon as the ship has passed the lighthouse."
)
voices=(en-us+m3 en-gb+f2)

make_speech() {
  local i parts=()
  for i in "${!sentences[@]}"; do
    espeak-ng -v "${voices[i % 2]}" -s 150 -w "sentence$i.wav" "${sentences[i]}"
    sox -R -D "sentence$i.wav" -e floating-point -b 32 -r $rate "part$i.wav" pad 0 0.8
    parts+=("part$i.wav")
  done
  sox -D "${parts[@]}" -e floating-point -b 32 speech.wav
  sox -D "${parts[@]}" "${parts[@]}" -e floating-point -b 32 long.wav
}

# ---- The tools: each makes $1/out.wav of $1/noisy.wav. All their settings stand here.

unit_reducer() {  # the manual's settings for speech
  "$bin/compare_unit" "$1/noisy.wav" - "$1/out.wav" bandwidthIndex=1 'broadbandType(1)=0' 'broadbandActive(1)=1' \
    'filterAtten(7)=29490'
}
speex() { "$bin/compare_speex" "$1/noisy.wav" "$1/out.wav" -15 20 2>>messages; }       # its default
speex_deep() { "$bin/compare_speex" "$1/noisy.wav" "$1/out.wav" -30 20 2>>messages; }
noise_only() { echo "trim 0.1 $(awk "BEGIN { print $lead - 0.3 }")"; }
noisered() {
  sox -V1 -D "$1/noisy.wav" -n $(noise_only) noiseprof "$1/profile"
  sox -V1 -D "$1/noisy.wav" "$1/out.wav" noisered "$1/profile" 0.1
}
afftdn() {  # told the level of the noise and its spectrum
  local level
  level=$(sox -V1 "$1/noisy.wav" -n $(noise_only) stats 2>&1 | awk '/^RMS lev dB/ { print $4 ~ /inf/ ? -80 : int($4) }')
  through_ffmpeg "$1" "asendcmd=c='0.2 afftdn sn start; 1.8 afftdn sn stop',afftdn=nr=20:nf=$level"
}
anlmdn() { through_ffmpeg "$1" "anlmdn=s=100:p=0.002:r=0.02:m=15"; }
through_ffmpeg() {
  ffmpeg -nostdin -v error -y -i "$1/noisy.wav" -af "$2" -c:a pcm_f32le "$1/out.wav"
}

unit_hum() {  # the manual's settings for hum
  "$bin/compare_unit" "$1/noisy.wav" - "$1/out.wav" bandwidthIndex=1 'filterType(1)=1' 'filterActive(1)=1' \
    'ch1Taps(1)=1024' 'ch1Mu(1)=16' 'ch1PredSpan(1)=1200' 'ch1AutoNormalize(1)=1' 'ch1AdaptSelect(1)=0' \
    'filterAdapt(1)=1' adaptEnabled=1
}
notches() {  # of the 20 harmonics of 50 Hz, each so many Hz wide
  local chain=() k
  for ((k = 50; k <= 1000; k += 50)); do chain+=(bandreject $k "$2h"); done
  sox -V1 -D "$1/noisy.wav" "$1/out.wav" "${chain[@]}"
}
sox_half() { notches "$1" 0.5; }
sox_1() { notches "$1" 1; }
sox_2() { notches "$1" 2; }
ff_quarter() { ff_notches "$1" 0.25; }
ff_notches() {
  local chain= k
  for ((k = 50; k <= 1000; k += 50)); do chain+="bandreject=f=$k:t=h:w=$2:r=f64,"; done
  through_ffmpeg "$1" "${chain%,}"
}

unit_canceller() {  # the manual's settings for a reference through a room
  "$bin/compare_unit" "$1/noisy.wav" "$1/reference.wav" "$1/out.wav" bandwidthIndex=1 'filterType(1)=0' \
    'filterActive(1)=1' 'ch2Taps(1)=1024' 'ch2Mu(1)=16' 'ch2DelayChan(1)=1' 'ch2Delay(1)=0' 'ch2AutoNormalize(1)=1' \
    'ch2AdaptSelect(1)=0' 'filterAdapt(1)=1' adaptEnabled=1
}
speex_128() { "$bin/compare_echo" "$1/noisy.wav" "$1/reference.wav" "$1/out.wav" 128 1024; }
speex_256() { "$bin/compare_echo" "$1/noisy.wav" "$1/reference.wav" "$1/out.wav" 256 1024; }
anlms_001() { anlms "$1" 0.001; }
anlms_003() { anlms "$1" 0.003; }
anlms_01() { anlms "$1" 0.01; }
anlms() {
  ffmpeg -nostdin -v error -y -i "$1/reference.wav" -i "$1/noisy.wav" \
    -filter_complex "[0][1]anlms=order=1024:mu=$2:eps=0.0001:out_mode=n" -c:a pcm_f32le "$1/out.wav"
}

# ---- The recordings and the tools that are tried on each: name, kind, ratio in dB, seed, tools.

denoisers="unit_reducer speex speex_deep noisered afftdn anlmdn"
notches="unit_hum ff_quarter sox_half sox_1 sox_2"
cancellers="unit_canceller speex_128 speex_256 anlms_001 anlms_003 anlms_01"
recordings=(
  "white-5 white 5 1 $denoisers"
  "white-0 white 0 2 $denoisers"
  "pink-5 pink 5 3 $denoisers"
  "clean none 0 4 $denoisers"
  "hum-0 hum 0 5 $notches"
  "hum-10 hum 10 6 $notches"
  "mains-0 mains 0 7 $notches"
  "hum+5 hum -5 15 $notches"
  "mains-10 mains 10 8 $notches"
  "mains+5 mains -5 16 $notches"
  "hum-clean none 0 9 $notches"
  "radio-0 radio 0 10 $cancellers"
  "radio-5 radio -5 11 $cancellers"
  "radio-10 radio 10 12 $cancellers"
  "moved-0 moved 0 13 $cancellers"
  "elsewhere elsewhere 0 14 $cancellers"
)

heading=
head() {  # of a table, wherever other tools come
  [ "$heading" = "$*" ] && return
  heading="$*"
  printf '\n|  | untreated |%s\n|---|---|' "$(printf ' %s |' "$@")"
  printf -- '---|%.0s' "$@"
  printf '\n'
}

compare() {  # name kind ratio seed tools...
  local name=$1 gain stoi delay voice=speech.wav from=$lead
  case $2 in
    hum | mains | radio | moved | elsewhere) voice=long.wav ;;
  esac
  [ "$1" = hum-clean ] && voice=long.wav
  if [ $voice = long.wav ]; then from=$(soxi -D long.wav | awk '{ print $1 / 2 }'); fi  # what has learned counts
  mkdir -p "$name"
  "$bin/compare_recording" "$2" "$3" "$4" "$voice" "$name"
  shift 4
  head "$@"
  printf '| %s |' "$name"
  for tool in untreated "$@"; do
    if [ "$tool" = untreated ]; then cp "$name/noisy.wav" "$name/out.wav"; else "$tool" "$name"; fi
    read -r gain stoi delay < <("$bin/compare_measure" "$name/clean.wav" "$name/noisy.wav" "$name/out.wav" "$from")
    mv "$name/out.wav" "$name/$tool.wav"
    echo "$tool $delay" >>"$name/delays"
    if [ "$tool" = untreated ]; then printf ' %s |' "$stoi"; else printf ' %+.1f dB, %s |' "$gain" "$stoi"; fi
  done
  printf '\n'
}

make_speech
for recording in "${recordings[@]}"; do
  read -r -a words <<<"$recording"
  compare "${words[@]}"
done
