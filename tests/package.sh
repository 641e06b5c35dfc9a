#!/usr/bin/env bash
# Installs what is shipped into a folder, as the package does, and looks at it there: package.sh BUILD. The programs start
# from that folder, as a user whose home lies beside it.
set -uo pipefail
build=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
root=$scratch/installed share=$scratch/installed/usr/share home=$scratch/user
mkdir -p "$home"
failed=0
fail() {
  echo "FAILED: $*"
  failed=1
}
# Runs a command; what it says counts only where it fails.
holds() { "$@" >"$scratch/said" 2>&1 || { fail "$*"; cat "$scratch/said"; }; }

DESTDIR=$root cmake --install "$build" --prefix /usr >/dev/null || { echo "Nothing can be installed"; exit 1; }

# What is there, and what makes a desktop find it.
for file in "veltrana/Factory Defaults.nrv" applications/veltrana.desktop mime/packages/veltrana.xml \
  metainfo/example.nrv.veltrana.metainfo.xml doc/veltrana/copyright doc/veltrana/changelog.gz \
  icons/hicolor/scalable/apps/veltrana.svg icons/hicolor/scalable/mimetypes/application-x-veltrana-setup.svg; do
  [ -s "$share/$file" ] || fail "$file is not installed"
done
[ ! -e "$share/veltrana/vlnamain.fwr" ] || fail "a real unit would be offered the simulated one's firmware"
[ ! -e "$build/bin/Veltrana Help.html" ] || [ -s "$share/veltrana/Veltrana Help.html" ] || fail "the manual is not installed"
holds desktop-file-validate "$share/applications/veltrana.desktop"
holds appstreamcli validate --no-net --no-color "$share/metainfo/example.nrv.veltrana.metainfo.xml"
holds update-mime-database "$share/mime"
type=$(sed -n 's/^MimeType=\(.*\);$/\1/p' "$share/applications/veltrana.desktop")
grep -qx "[0-9]*:$type:\*\.nrv" "$share/mime/globs2" || fail "setup files are not of the type that the program opens"
for side in 16 22 24 32 48 64 128 256 512; do
  for icon in apps/veltrana "mimetypes/${type/\//-}"; do
    png=$share/icons/hicolor/${side}x$side/$icon.png
    # Width and height stand behind the head of the first chunk.
    [ "$(od -An -tu1 -j16 -N8 "$png" | tr -s ' \n' ' ')" = " 0 0 $((side / 256)) $((side % 256)) 0 0 $((side / 256)) $((side % 256)) " ] ||
      fail "$png is not $side pixels wide and high"
  done
done

# The programs, with a home of their own and nothing of this user's.
echo "user:x:$(id -u):$(id -g)::$home:/bin/sh" >"$scratch/passwd"
echo "group:x:$(id -g):" >"$scratch/group"
wrapper=libnss_wrapper.so
LD_PRELOAD=$wrapper true 2>"$scratch/said"
[ ! -s "$scratch/said" ] || { echo "libnss-wrapper is not installed"; exit 1; }
as_user() {
  LD_PRELOAD=$wrapper NSS_WRAPPER_PASSWD=$scratch/passwd NSS_WRAPPER_GROUP=$scratch/group QT_QPA_PLATFORM=offscreen "$@"
}
listing() { (cd "$root" && find . -type f -exec md5sum {} + | sort); }
listing >"$scratch/before"
printf 'help\nquit\n' | as_user timeout 60 "$root/usr/bin/veltrana-console" >"$scratch/console" || fail "the console says $(cat "$scratch/console")"
state=$home/.local/share/veltrana/veltrana.set
[ -s "$state" ] || fail "the console has kept no settings in the home"
# It began with the factory setup, which has a description that no other beginning has.
grep -q 'cannot be opened' "$scratch/console" && fail "the console has not found the factory setup"
rm -f "$state"
as_user timeout --preserve-status -s TERM 8 "$root/usr/bin/veltrana" >"$scratch/said" 2>&1 || fail "the desktop program: $(cat "$scratch/said")"
[ -s "$state" ] || fail "the desktop program has kept no settings in the home"
# A second graphics library, or that of the print server and the twenty that it needs, would be in memory all the time.
! ldd "$root/usr/bin/veltrana" | grep -E 'lib(cairo|cups)\.' || fail "the desktop program is linked with what it can do without"
"$root/usr/bin/veltrana-unit" --help >"$scratch/unit" || fail "the unit does not start"
listing | diff "$scratch/before" - || fail "a program has written beside itself"

# The manual's pages: they render without a complaint, and have every option and command, and no other.
page() { man --warnings -E UTF-8 -Tutf8 -l "$share/man/man1/$1.1.gz" 2>"$scratch/complaints" | col -b; }
for name in veltrana veltrana-console veltrana-unit; do
  page $name >"$scratch/$name.page"
  [ -s "$scratch/$name.page" ] && [ ! -s "$scratch/complaints" ] || fail "the page of $name: $(cat "$scratch/complaints")"
done
same() { diff <(sort -u "$2") <(sort -u "$3") || fail "$1 and its page differ"; }
grep -oE -- '^ +--[a-z-]+' "$scratch/unit" | tr -d ' ' >"$scratch/options"
sed -n '/^OPTIONS/,/^EXAMPLES/p' "$scratch/veltrana-unit.page" | grep -oE -- '^       --[a-z-]+' | tr -d ' ' >"$scratch/told"
[ -s "$scratch/options" ] || fail "the unit tells of no options"
same veltrana-unit "$scratch/options" "$scratch/told"
sed -n '/^forms$/,/^help$/p' "$scratch/console" | cut -d' ' -f1 >"$scratch/commands"
sed -n '/^COMMANDS/,/^EXAMPLE/p' "$scratch/veltrana-console.page" | grep -oE '^ {7}[a-z]+' | tr -d ' ' >"$scratch/told"
[ -s "$scratch/commands" ] || fail "the console tells of no commands"
same veltrana-console "$scratch/commands" "$scratch/told"
exit $failed
