#!/usr/bin/env python3
"""report_test.py REPORT: what the report makes of figures, and when it fails."""
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

REPORT = sys.argv.pop(1)

# A benchmark program whose figures are ready.
PROGRAM = """#!{python}
import json, sys
out = next(word for word in sys.argv if word.startswith("--benchmark_out="))
figures = {figures}
rounds = [(name, time) for name, times in figures.items() for time in (times if isinstance(times, list) else [times])]
json.dump({{"benchmarks": [{{"run_name": name, "run_type": "iteration", "cpu_time": time, "real_time": time}}
                         for name, time in rounds] +
                        [{{"run_name": name, "run_type": "aggregate", "cpu_time": 0, "real_time": 0}}
                         for name in figures]}}, open(out.split("=", 1)[1], "w"))
"""


class Report(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = pathlib.Path(self.folder.name)

    def program(self, figures):
        program = self.path / f"program{len(list(self.path.iterdir()))}"
        program.write_text(PROGRAM.format(python=sys.executable, figures=figures), encoding="utf-8")
        program.chmod(0o755)
        return program

    def report(self, targets, *programs, check=True):
        """Its exit code, what it printed, and the rows that it wrote."""
        (self.path / "targets.json").write_text(json.dumps(targets), encoding="utf-8")
        results = self.path / "out" / "results.json"
        run = subprocess.run(
            [sys.executable, REPORT, "--targets", self.path / "targets.json", "--out", results, *programs,
             *(["--check"] if check else [])],
            capture_output=True, text=True, check=False)
        return run.returncode, run.stdout + run.stderr, json.loads(results.read_text(encoding="utf-8"))

    def test_figures_within_their_targets_are_ok(self):
        program = self.program({"a/ours": 20, "a/floor": 10, "b/ours/real_time": 4, "b/floor/real_time": 1})
        code, text, rows = self.report({"a": 2.0, "b": {"ours_ns": 5}}, program)
        self.assertEqual(code, 0, text)
        self.assertEqual([(row["name"], row["ratio"], row["ok"]) for row in rows], [("a", 2.0, True), ("b", 4.0, True)])

    def test_a_figure_is_the_mean_of_the_fastest_third_of_its_rounds(self):
        program = self.program({"a/ours": [90, 30, 10, 80, 95, 70], "a/floor": [50, 11, 60, 9, 12, 80]})
        rows = self.report({"a": 2.0}, program)[2]
        self.assertEqual((rows[0]["ours_ns"], rows[0]["floor_ns"]), (20, 10))

    def test_a_missed_target_fails_only_when_it_is_checked(self):
        program = self.program({"a/ours": 21, "a/floor": 10})
        code, text, rows = self.report({"a": 2.0}, program)
        self.assertNotEqual(code, 0)
        self.assertIn("a target was missed", text)
        self.assertFalse(rows[0]["ok"])
        self.assertEqual(self.report({"a": 2.0}, program, check=False)[0], 0)

    def test_a_target_that_no_program_measures_fails_when_it_is_checked(self):
        first = self.program({"a/ours": 10, "a/floor": 10})
        second = self.program({"b/ours": 10, "b/floor": 10})
        targets = {"a": 2.0, "b": 2.0, "gone": 1.0, "lost": {"ours_ns": 5}}
        code, text, rows = self.report(targets, first, second)
        self.assertNotEqual(code, 0)
        self.assertIn("not measured: gone, lost", text)
        self.assertEqual([row["name"] for row in rows], ["a", "b"])
        self.assertEqual(self.report(targets, first, second, check=False)[0], 0)


if __name__ == "__main__":
    unittest.main()
