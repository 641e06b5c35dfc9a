#!/usr/bin/env python3
"""Reads what llvm-cov has exported: a table of branches by file, or the branches of the files given that are missed."""
import json
import os
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
WATCHED = {
    "loader": ["src/persist/" + name for name in (
        "modSettings.cpp", "SetupText.cpp", "SetupLines.cpp", "LineText.cpp", "CoefficientBlock.cpp")],
    "codec": ["src/link/Frames.cpp", "src/link/Status.cpp"] + ["src/model/" + name for name in (
        "CoefficientPacking.cpp", "RegisterImage.cpp", "RegisterTable.cpp", "SynthesisBlock.cpp", "BroadbandBlock.cpp",
        "DownloadPlan.cpp")],
    "link": ["src/link/" + name for name in (
        "veltrana.cpp", "modComm.cpp", "Transactions.cpp", "Polling.cpp", "Connection.cpp")] + [
        "src/model/Download.cpp", "src/model/CoefReader.cpp", "src/model/SpectrumReader.cpp"],
    "save": ["src/persist/SafeFile.cpp", "src/shell/LastState.cpp", "apps/host/PosixFiles.cpp"],
}


def conditions(entry):
    """Line, first and last column of each condition, with how often it was true and false in all of its instances."""
    found = {}
    for first, start, last, end, true, false, *_ in entry["branches"]:
        before = found.get((first, start, last, end), (0, 0))
        found[first, start, last, end] = (before[0] + true, before[1] + false)
    return found


def files(path):
    with open(path, encoding="utf-8") as stream:
        entries = json.load(stream)["data"][0]["files"]
    for entry in entries:
        for name in sum(WATCHED.values(), []):
            if entry["filename"].endswith("/" + name):
                yield name, conditions(entry)


def main():
    measured = dict(files(sys.argv[1]))
    for name in sys.argv[2:]:
        with open(os.path.join(ROOT, name), encoding="utf-8") as stream:
            lines = stream.read().splitlines()
        for (first, start, last, end), (true, false) in sorted(measured[name].items()):
            if true and false:
                continue
            text = lines[first - 1][start - 1:end - 1] if first == last else lines[first - 1].strip()
            print(f"{name}:{first}: true {true} times, false {false} times: {text}")
    if len(sys.argv) > 2:
        return
    for group, names in WATCHED.items():
        total = taken = 0
        for name in names:
            sides = [side for counts in measured.get(name, {}).values() for side in counts]
            total += len(sides)
            taken += sum(side > 0 for side in sides)
            print(f"  {name:42}{sum(side > 0 for side in sides):5} of {len(sides)}")
        print(f"{group:44}{taken:5} of {total}, {100 * taken / max(total, 1):.1f} %")


main()
