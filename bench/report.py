#!/usr/bin/env python3
"""Turns the benchmark's timings into docs/performance.md.

usage: report.py RESULTS.tsv WINE-VERSION > docs/performance.md

RESULTS.tsv holds lines "case<TAB>contender<TAB>round<TAB>seconds" and notes
"#note<TAB>case<TAB>text". A contender named "floor: ..." is the case's floor, one named
"Orbex ..." is Orbex, every other one is a peer.
"""
import collections
import datetime
import os
import statistics
import sys

# How far above the floor Orbex may be in the cases that have one; every case must also beat its peers.
FLOOR_LIMIT = 1.2
FLOOR_BOUND = ("GetSubKeyNames", "GetValueNames", "GetFolderSize", "GetSection")


def read(path):
    times = collections.defaultdict(lambda: collections.defaultdict(list))
    notes = {}
    rounds = set()
    for line in open(path, encoding="utf-8", errors="replace"):
        fields = line.rstrip("\n").split("\t")
        if fields[0] == "#note" and len(fields) == 3:
            notes[fields[1]] = fields[2]
        elif len(fields) == 4 and not fields[0].startswith("#"):
            case, contender, round_, seconds = fields
            times[case][contender].append(float(seconds))
            rounds.add(int(round_))
        elif line.startswith("FAILED"):
            sys.exit("report: the benchmark failed: " + line.strip())
    return times, notes, len(rounds)


def machine():
    model = "unknown processor"
    try:
        for line in open("/proc/cpuinfo"):
            if line.startswith("model name"):
                model = line.split(":", 1)[1].strip()
                break
    except OSError:
        pass
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    return f"{model}, {os.cpu_count()} cores, {memory:.0f} GiB"


def seconds_text(value):
    if value >= 1:
        return f"{value:.2f} s"
    if value >= 1e-3:
        return f"{value * 1e3:.1f} ms"
    return f"{value * 1e6:.0f} µs"


def is_floor(name):
    return name.startswith("floor:")


def is_orbex(name):
    return name.startswith("Orbex")


def targets(case, medians, note):
    """The target rows this case contributes: (target, figure, met)."""
    floor = next((m for n, m in medians.items() if is_floor(n)), None)
    orbex = {n: m for n, m in medians.items() if is_orbex(n)}
    rows = []
    if any(word in case for word in FLOOR_BOUND) and floor:
        for name, median in orbex.items():
            ratio = median / floor
            rows.append((f"{case}, {name}: within {FLOOR_LIMIT} × floor", f"{ratio:.2f} ×",
                         ratio <= FLOOR_LIMIT))
    peers = {n: m for n, m in medians.items() if not is_floor(n) and not is_orbex(n)}
    for peer, median in peers.items():
        # A peer reached through IDispatch meets Orbex's IDispatch, like for like.
        rivals = {n: m for n, m in orbex.items() if "IDispatch" in n} if "IDispatch" in peer else {}
        if not (rivals or orbex):
            continue
        name, best = min((rivals or orbex).items(), key=lambda item: item[1])
        beaten = best <= median
        rows.append((f"{case}: {name} beats {peer}", f"{best / median:.2f} ×",
                     beaten if beaten or not note else f"no; {note}"))
    return rows


def main():
    results, wine = sys.argv[1], sys.argv[2]
    times, notes, rounds = read(results)
    out = []
    out.append("# Performance\n")
    out.append("Made by `bash bench/run.sh` (see the README); do not edit by hand.\n")
    out.append(f"- Machine: {machine()}")
    out.append(f"- Wine: {wine}, 32-bit prefix; Orbex: the i686 release build")
    out.append(f"- Date: {datetime.date.today().isoformat()}; {rounds} rounds, medians shown\n")
    out.append("Every round times each contender of a case once, rivals interleaved and their order rotated "
               "from round to round, so all of them share the machine's moment. The floor makes the same "
               "platform calls as Orbex directly from C++ in the same process; a peer is what a user would "
               "pick instead. Ratios are the contender's median over the floor's or the peer's median: below "
               "1 is faster. Absolute times depend on the machine; the ratios are what count.\n")

    all_targets = []
    sections = []
    for case, contenders in times.items():
        medians = {name: statistics.median(values) for name, values in contenders.items()}
        peers = [n for n in medians if not is_floor(n) and not is_orbex(n)]
        floor = next((m for n, m in medians.items() if is_floor(n)), None)
        header = ["Contender", "Median", "× floor"] + [f"× {p}" for p in peers]
        lines = [f"## {case}\n", "| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
        for name, median in medians.items():
            cells = [name, seconds_text(median), f"{median / floor:.2f}" if floor else "–"]
            cells += [f"{median / medians[p]:.2f}" for p in peers]
            lines.append("| " + " | ".join(cells) + " |")
        if case in notes:
            lines.append(f"\n{notes[case]}")
        sections.append("\n".join(lines) + "\n")
        all_targets += targets(case, medians, notes.get(case))

    out.append("## Targets\n")
    out.append("| Target | Figure | Met |")
    out.append("|---|---|---|")
    for target, figure, met in all_targets:
        verdict = "yes" if met is True else ("**no**" if met is False else met)
        out.append(f"| {target} | {figure} | {verdict} |")
    out.append("")
    out += sections
    # What the figures mean and what was done to reach them: kept beside the script, by hand.
    notes = os.path.join(os.path.dirname(os.path.abspath(__file__)), "notes.md")
    out.append(open(notes, encoding="utf-8").read())
    print("\n".join(out))


if __name__ == "__main__":
    main()
