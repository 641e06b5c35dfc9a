#!/usr/bin/env python3
"""Runs clang-tidy over what a build folder was made of, but for tests, benchmarks and documents: analyse.py BUILD.

Most of the time goes into the headers of the system, so several sources of a target are analysed as one. They are
written into one file for that, not included: clang-tidy follows the paths only of what stands in the file itself. Names
of one file may collide with those of another there, so sources that define the same name are kept apart. A complaint
may still come from nothing but that a name of one hides or doubles what another one uses. So where a joined file is
complained of, each half of its sources is analysed again, down to single ones, and only what is said of these counts.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys

MOST_SOURCES = 12
SPARED = re.compile(r"/(tests|bench|docs)/")
# The kernel's headers of the serial line exclude the library's.
LONER = re.compile(r"^#include <asm/", re.MULTILINE)
# What a source defines beside members, told by the layout: it begins where a line does.
DEFINED = re.compile(r"^(?!using namespace|namespace|#|//|return)[A-Za-z][^\n(={;]*?(?<!:)\b(\w+) *(?:\[\w*\])?[({=;]", re.MULTILINE)


def options_of(entry):
    """What a source is compiled with, itself, its output, precompiled headers, what only g++ knows and what makes the code
    fast or short left out."""
    words = iter(shlex.split(entry["command"]))
    return tuple(word for word in words
                 if word not in ("-Winvalid-pch", "-c", entry["file"]) and not word.startswith(("--param=", "-O"))
                 and not (word in ("-include", "-o") and next(words)))


def groups_of(entries, build):
    """Sources that may be joined, with their options: [(target, options, [source, ...]), ...]."""
    alike = {}
    for entry in entries:
        source = entry["file"]
        if SPARED.search(source) or pathlib.Path(source).is_relative_to(build):
            continue
        target = re.search(r" -o \S*?([^/ ]+)\.dir/", entry["command"])[1]
        alone = source if LONER.search(pathlib.Path(source).read_text()) else None
        alike.setdefault((target, options_of(entry), alone), []).append(source)
    for (target, options, _), sources in alike.items():
        for joined in apart(sources):
            yield target, options, joined


def apart(sources):
    """Groups of sources in which no name is defined twice."""
    groups = []
    for source in sources:
        names = set(DEFINED.findall(pathlib.Path(source).read_text()))
        for group, taken in groups:
            if len(group) < MOST_SOURCES and not names & taken:
                group.append(source)
                taken |= names
                break
        else:
            groups.append(([source], names))
    return [group for group, _ in groups]


def write_joined(folder, name, options, sources):
    """One file of all sources, or the only one, and how it is compiled, as clang-tidy reads it."""
    place = folder / name
    place.mkdir()
    file = sources[0]
    if len(sources) > 1:
        file = str(place / f"{name}.cpp")
        pathlib.Path(file).write_text(
            "".join(f'#line 1 "{source}"\n{pathlib.Path(source).read_text()}' for source in sources))
    command = {"directory": str(folder.parent), "file": file, "arguments": [*options, "-c", file]}
    (place / "compile_commands.json").write_text(json.dumps([command]))
    return place, file


def complaint(folder, name, options, sources):
    """What clang-tidy says of sources, empty where it finds nothing."""
    place, file = write_joined(folder, name, options, sources)
    run = subprocess.run(["clang-tidy", "--quiet", "--config-file=.clang-tidy", "-p", place, file],
                         capture_output=True, text=True, check=False)
    if run.returncode == 0:
        return ""
    if len(sources) == 1:
        return run.stdout + run.stderr or "clang-tidy failed"
    print("Apart:", *(os.path.relpath(source) for source in sources), flush=True)
    return "".join(complaint(folder, f"{name}-{half}", options, sources[half::2]) for half in (0, 1))


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    os.chdir(pathlib.Path(__file__).resolve().parent.parent)
    folder = build / "analysis"
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir()
    groups = list(groups_of(json.loads((build / "compile_commands.json").read_text()), build))
    groups.sort(key=lambda group: sum(map(os.path.getsize, group[2])), reverse=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        said = pool.map(lambda part: complaint(folder, f"{part[1][0]}-{part[0]}", *part[1][1:]), enumerate(groups))
        complaints = [text for text in said if text]
    print(*complaints, sep="\n", end="")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
