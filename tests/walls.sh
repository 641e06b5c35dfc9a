#!/usr/bin/env bash
# What the compiler cannot see of the walls between the parts of the house.
set -uo pipefail
cd "$(dirname "$0")/.."
failed=0

# Prints what a search finds under a heading; finding anything is a failure.
forbid() {
  local heading=$1
  shift
  local found
  found=$(grep -rnE "$@") || return 0
  printf '%s:\n%s\n' "$heading" "$found"
  failed=1
}

forbid "src/ needs the standard library alone" '#include <([a-z/]+\.h|Q[A-Za-z/]+|Qt.*)>' src
forbid "Only the platform's interfaces are virtual" '\bvirtual\b|: public [a-zA-Z]' src --include=*.h --exclude-dir=platform
forbid "Nothing but the platform's clock reads the time" 'chrono|time\.h|ctime|gettimeofday' src
# What is started beside the program gets its environment unread.
forbid "Nothing reads the environment" 'getenv|secure_getenv|environ\b' src apps --exclude=PosixPrograms.cpp
forbid "The simulated unit shares no code with the program" '#include "(platform|text|widgets|link|model|shell|host|desktop|console)/' apps/unit
forbid "The console and the host need no toolkit" '#include <Q' apps/console apps/host apps/unit
forbid "A loop over a folder throws where it cannot be read on" 'for \(.*: *(std::filesystem|fs)::' src apps
forbid "What must lead somewhere has a default that does nothing" 'std::function<.*> [A-Za-z]+ = *(\[|$)' src
forbid "A wire has a default" 'Wire<.*> [A-Za-z]+ *[={]' src
# The parts of a path are told without a look at the disk.
calls=$(grep -rnE '\b(filesystem|fs)::' src apps | sed -E 's/\b(filesystem|fs)::path\(//g' |
  grep -E '\b(filesystem|fs)::([a-z_]+\(|directory_iterator [a-z]+[({])' | grep -vE '[,(] ?(error|ignored)\)')
[ -z "$calls" ] || { printf 'A look at the disk throws without an error code:\n%s\n' "$calls"; failed=1; }
forbid "A look at the disk throws without an error code" 'entry\.(is_[a-z_]+|exists|status|symlink_status|refresh|file_size)\(\)' src apps
exit $failed
