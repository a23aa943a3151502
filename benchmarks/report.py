"""Runs benchmark programs and puts their figures together.

    report.py --targets targets.json --out results.json [--check] PROGRAM...

Each figure is the median of several rounds, in which ours and floor take turns. A ratio is ours through floor; a target
is the greatest ratio allowed.
"""

import argparse
import json
import pathlib
import subprocess
import sys
import tempfile

ROUNDS = 9


def medians(program):
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [program, f"--benchmark_out={out.name}", "--benchmark_out_format=json",
                   f"--benchmark_repetitions={ROUNDS}", "--benchmark_enable_random_interleaving=true",
                   "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.05"]
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
        document = json.load(open(out.name, encoding="utf-8"))
    return {run["run_name"]: run["real_time"] for run in document["benchmarks"] if run["aggregate_name"] == "median"}


def rows(times, targets):
    for name in (key[:-len("/ours")] for key in times if key.endswith("/ours")):
        ours, floor, target = times[f"{name}/ours"], times[f"{name}/floor"], targets[name]
        ratio = ours / floor
        yield {"name": name, "ours_ns": ours, "floor_ns": floor, "ratio": ratio, "target": target, "ok": ratio <= target}


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--targets", type=pathlib.Path, required=True)
    arguments.add_argument("--out", type=pathlib.Path, required=True)
    arguments.add_argument("--check", action="store_true", help="fail when a target is missed")
    arguments.add_argument("programs", nargs="+")
    given = arguments.parse_args()
    targets = json.loads(given.targets.read_text(encoding="utf-8"))
    results = []
    print(f"{'name':24} {'ours':>12} {'floor':>12} {'ratio':>7} {'target':>7}  ok")
    for program in given.programs:
        for row in rows(medians(program), targets):
            results.append(row)
            print(f"{row['name']:24} {row['ours_ns']:9.1f} ns {row['floor_ns']:9.1f} ns {row['ratio']:7.2f} "
                  f"{row['target']:7.2f}  {'yes' if row['ok'] else 'NO'}", flush=True)
    given.out.parent.mkdir(parents=True, exist_ok=True)
    given.out.write_text(json.dumps(results, indent=4) + "\n", encoding="utf-8")
    if given.check and not all(row["ok"] for row in results):
        sys.exit("a target was missed")


if __name__ == "__main__":
    main()
