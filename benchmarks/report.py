"""Runs benchmark programs and puts their figures together.

    report.py --targets targets.json --out results.json [--check] PROGRAM...

Each figure is the mean of the fastest third of its rounds, in which ours and floor take turns: what else a machine does
only ever adds time. A ratio is ours through floor. A target is the greatest ratio allowed, or, as {"ours_ns": N}, the
greatest time; null: the figure is only to be seen.
"""

import argparse
import collections
import json
import pathlib
import statistics
import subprocess
import sys
import tempfile

ROUNDS = 15


def figures(program):
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [program, f"--benchmark_out={out.name}", "--benchmark_out_format=json",
                   f"--benchmark_repetitions={ROUNDS}", "--benchmark_enable_random_interleaving=true",
                   "--benchmark_min_time=0.05"]
        run = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
        if run.returncode != 0:
            sys.exit(f"{program} has failed:\n{run.stderr}")
        document = json.load(open(out.name, encoding="utf-8"))
    times = collections.defaultdict(list)
    for run in document["benchmarks"]:
        if run["run_type"] == "iteration":
            times[name_of(run)].append(time_of(run))
    return {name: mean_of_fastest(found) for name, found in times.items()}


def mean_of_fastest(times):
    return statistics.mean(sorted(times)[:max(1, len(times) // 3)])


def name_of(run):
    """Without what the library says of how it measured."""
    return "/".join(run["run_name"].split("/")[:2])


def time_of(run):
    """What several processes or threads share is timed by the clock; other work by what it takes of the processor."""
    by_clock = run["run_name"].endswith(("/real_time", "/manual_time"))
    return run["real_time"] if by_clock else run["cpu_time"]


def rows(times, targets):
    for name in (key[:-len("/ours")] for key in times if key.endswith("/ours")):
        ours, floor, target = times[f"{name}/ours"], times[f"{name}/floor"], targets[name]
        row = {"name": name, "ours_ns": ours, "floor_ns": floor, "ratio": ours / floor, "target": target}
        yield row | {"ok": is_met(row, target)}


def is_met(row, target):
    if isinstance(target, dict):
        return row["ours_ns"] <= target["ours_ns"]
    return target is None or row["ratio"] <= target


def duration(nanoseconds):
    """Three digits and a unit."""
    for unit, size in (("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.{3 if nanoseconds < 1000 * size else 4}g} {unit}"
    return f"{nanoseconds:.3g} ns"


def line(row):
    target = row["target"]
    figures = f"{row['name']:24} {duration(row['ours_ns']):>10} {duration(row['floor_ns']):>10} {row['ratio']:7.2f}"
    if target is None:
        return figures
    wanted = duration(target["ours_ns"]) if isinstance(target, dict) else f"{target:.2f}"
    return f"{figures} {wanted:>7}  {'yes' if row['ok'] else 'NO'}"


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--targets", type=pathlib.Path, required=True)
    arguments.add_argument("--out", type=pathlib.Path, required=True)
    arguments.add_argument("--check", action="store_true", help="fail when a target is missed or not measured")
    arguments.add_argument("programs", nargs="+")
    given = arguments.parse_args()
    targets = json.loads(given.targets.read_text(encoding="utf-8"))
    results = []
    print(f"{'name':24} {'ours':>10} {'floor':>10} {'ratio':>7} {'target':>7}  ok")
    for program in given.programs:
        for row in rows(figures(program), targets):
            results.append(row)
            print(line(row), flush=True)
    given.out.parent.mkdir(parents=True, exist_ok=True)
    given.out.write_text(json.dumps(results, indent=4) + "\n", encoding="utf-8")
    not_measured = sorted(set(targets) - {row["name"] for row in results})
    for name in not_measured:
        print(f"{name:24} not measured")
    if given.check and not_measured:
        sys.exit(f"not measured: {', '.join(not_measured)}")
    if given.check and not all(row["ok"] for row in results):
        sys.exit("a target was missed")


if __name__ == "__main__":
    main()
