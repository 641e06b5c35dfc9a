#!/usr/bin/env python3
"""Runs clang-tidy over what a build folder was made of, but for tests, benchmarks and documents: analyse.py BUILD.

Most of the time goes into the headers of the system, so several sources of a target are analysed as one. They are
written into one file for that, not included: clang-tidy follows the paths only of what stands in the file itself. Names
of one file may collide with those of another there, and a complaint may come from nothing but that. So where a joined
file is complained of, each of its sources is analysed by itself, and only what is said then counts.
"""
import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

MOST_SOURCES = 7
SPARED = re.compile(r"/(tests|bench|docs)/")
# The kernel's headers of the serial line exclude the library's.
LONER = re.compile(r"^#include <asm/", re.MULTILINE)


def options_of(entry):
    """What a source is compiled with, itself, its output and precompiled headers left out."""
    words = iter(shlex.split(entry["command"]))
    return tuple(word for word in words
                 if word not in ("-Winvalid-pch", "-c", entry["file"])
                 and not (word in ("-include", "-o") and next(words)))


def groups_of(entries, build):
    """Sources that may be joined, with their options: [(target, options, [source, ...]), ...]."""
    alike = {}
    for entry in entries:
        source = entry["file"]
        if SPARED.search(source) or pathlib.Path(source).is_relative_to(build):
            continue
        target = re.search(r"([^/ ]+)\.dir/", entry["command"])[1]
        alone = source if LONER.search(pathlib.Path(source).read_text()) else None
        alike.setdefault((target, options_of(entry), alone), []).append(source)
    for (target, options, _), sources in alike.items():
        parts = -(-len(sources) // MOST_SOURCES)
        for part in range(parts):
            yield target, options, sources[part::parts]


def write_joined(folder, groups):
    """The joined files and how each file is compiled, as clang-tidy reads it: {file to analyse: its sources}."""
    commands, joined = [], {}
    for number, (target, options, sources) in enumerate(groups):
        file = folder / f"{target}-{number}.cpp"
        file.write_text("".join(f'#line 1 "{source}"\n{pathlib.Path(source).read_text()}' for source in sources))
        joined[str(file)] = sources
        commands += [{"directory": str(folder.parent), "file": one, "arguments": [*options, "-c", one]}
                     for one in (str(file), *sources)]
    (folder / "compile_commands.json").write_text(json.dumps(commands))
    return joined


def complaint(folder, file):
    """What clang-tidy says of a file, empty where it finds nothing."""
    run = subprocess.run(["clang-tidy", "--quiet", "--config-file=.clang-tidy", "-p", folder, file],
                         capture_output=True, text=True, check=False)
    return (run.stdout + run.stderr or "clang-tidy failed") if run.returncode != 0 else ""


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    os.chdir(pathlib.Path(__file__).resolve().parent.parent)
    folder = build / "analysis"
    folder.mkdir(exist_ok=True)
    joined = write_joined(folder, groups_of(json.loads((build / "compile_commands.json").read_text()), build))
    longest_first = sorted(joined, key=os.path.getsize, reverse=True)
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        said = pool.map(lambda file: complaint(folder, file), longest_first)
        again = [source for file, text in zip(longest_first, said) if text for source in joined[file]]
        if again:
            print("By itself:", *sorted(os.path.relpath(source) for source in again))
        complaints = [text for text in pool.map(lambda file: complaint(folder, file), again) if text]
    print(*complaints, sep="\n", end="")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
