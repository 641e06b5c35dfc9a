#!/usr/bin/env bash
# Tries the package in a minimal Debian 12 with nothing but what it depends on: try-package.sh [PACKAGE]. The three programs
# start there, a recording is cleaned, and the package goes again without a trace but the user's files. Needs mmdebstrap, and
# the Debian packages that apt gets here. As root, or where users may make name spaces.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh mmdebstrap lintian
package=$(realpath "${1:-$(ls build/package/*.deb)}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "== lintian"
lintian --fail-on error,warning --allow-root "$package"

# What happens inside, as root and then as a user of the machine.
cat >"$work/inside.sh" <<'END'
set -euo pipefail
listing() { find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /var/log -o -path /var/cache -o -path /var/lib/dpkg -o -path /var/lib/apt -o -path /home \) -prune -o -type f -print | sort; }
as_user() { setpriv --reuid ana --regid ana --init-groups env HOME=/home/ana QT_QPA_PLATFORM=offscreen "$@"; }
# Pseudo-terminals of this machine's own, as any has that is not only a folder.
mount -t devpts -o newinstance,ptmxmode=0666,mode=0620,gid=5 devpts /dev/pts
mount --bind /dev/pts/ptmx /dev/ptmx
useradd --create-home ana

# First what it depends on, so that what is left afterwards is the package's own trace.
depends=$(dpkg-deb -f /tmp/veltrana.deb Depends | sed -E 's/ \([^)]*\)//g; s/ \|[^,]*//g; s/,//g')
apt-get install -y -qq --no-install-recommends $depends >/tmp/apt.log 2>&1 || { cat /tmp/apt.log; exit 1; }
listing >/tmp/before
apt-get install -y -qq --no-install-recommends /tmp/veltrana.deb >/tmp/apt.log 2>&1 || { cat /tmp/apt.log; exit 1; }
echo "== installed: $(dpkg-query -W veltrana), $(dpkg -L veltrana | wc -l) files and folders"

cd /home/ana
as_user veltrana-unit --help >/dev/null
# Five seconds of noise: mono, 16 bits, 12 kHz.
{
  printf 'RIFF\xe4\xd4\x01\x00WAVEfmt \x10\x00\x00\x00\x01\x00\x01\x00\xe0\x2e\x00\x00\xc0\x5d\x00\x00\x02\x00\x10\x00data\xc0\xd4\x01\x00'
  head -c 120000 /dev/urandom
} >noisy.wav
as_user timeout 120 veltrana-console <<'LINES' >/tmp/console 2>&1 || { cat /tmp/console; exit 1; }
unit start
record bandwidthIndex 3
record broadbandActive(1) 1
clean noisy.wav clean.wav
quit
LINES
grep '^report' /tmp/console
[ -s clean.wav ]
echo "== the desktop program runs for ten seconds, and ends in order"
as_user timeout --preserve-status -s TERM 10 veltrana
find /home/ana -type f | sort

# Nothing but this user's home has been written meanwhile.
apt-get purge -y -qq veltrana >/tmp/apt.log 2>&1 || { cat /tmp/apt.log; exit 1; }
listing >/tmp/after
diff /tmp/before /tmp/after
[ -s /home/ana/.local/share/veltrana/veltrana.set ]
echo "== purged without a trace but the user's files"
END

echo "== a minimal Debian"
sources=()
for list in /etc/apt/sources.list.d/debian.sources /etc/apt/sources.list; do [ ! -s $list ] || sources+=("$list"); done
proxy=$(apt-config dump Acquire::http::Proxy --format '%v')
mode=unshare
[ "$(id -u)" -ne 0 ] || mode=root
timeout 1200 mmdebstrap --quiet --mode=$mode --variant=minbase ${proxy:+"--aptopt=Acquire::http::Proxy \"$proxy\""} \
  --customize-hook="copy-in '$package' /tmp" --customize-hook="mv \"\$1/tmp/$(basename "$package")\" \"\$1/tmp/veltrana.deb\"" \
  --customize-hook="copy-in '$work/inside.sh' /tmp" --customize-hook='unshare --mount chroot "$1" bash /tmp/inside.sh' \
  bookworm /dev/null "${sources[@]}"
