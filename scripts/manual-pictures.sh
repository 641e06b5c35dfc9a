#!/usr/bin/env bash
# Makes the manual's pictures anew from a tour through the built program: manual-pictures.sh BUILD. A form is pictured
# under its own name, or under the one that the tour has for its best moment.
set -euo pipefail
build=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."
export QT_SCALE_FACTOR=1
room=/tmp/veltrana  # wherever it was built: windows show in which folder they are
mkdir "$room"
trap 'rm -rf "$room"' EXIT
cp -r "$build/bin" "$room/bin"
bash tests/tour.sh "$room" | grep -v '^ok' || true  # it tells what it missed; the pictures that are there count
best=(MasterControl=master FrmSplash=splash StoSet=store-existing RecSet=recall MemSelect=filter-recall
  FrmUnit=unit-recording FrmLineTrace=line-trace FrmClean=clean-done FrmDebug=object-log FrmFirmwareUpload=firmware-2)
own=()
for words in manual/words/*.txt; do
  form=$(basename "$words" .txt)
  [[ $form == common || " ${best[*]}" == *" $form="* ]] || own+=("$form")
done
mkdir -p manual/pictures
"$build/docs/make_manual_pictures" "$room/tour" manual/pictures "${best[@]}" "${own[@]}"
