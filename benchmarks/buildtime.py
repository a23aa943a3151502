"""Times builds of everything: a clean one, without a compiler cache, and those after a change to one file.

    buildtime.py --jobs N [--preset dev] [--target all]

Builds in build/timing, which is emptied before and removed afterwards.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDER = ROOT / "build" / "timing"
# What is changed: a source of the library, and the header of the value tree, which much includes.
SOURCE = ROOT / "connectionmanagement" / "korveguitoservercorbahandler.cpp"
HEADER = ROOT / "platform" / "valuetreelib" / "tree.h"


def run(*command):
    environment = {key: value for key, value in os.environ.items() if not key.endswith("_COMPILER_LAUNCHER")}
    subprocess.run(command, check=True, cwd=ROOT, stdout=subprocess.DEVNULL, env=environment | {"CCACHE_DISABLE": "1"})


def seconds_of(work):
    begin = time.monotonic()
    work()
    return time.monotonic() - begin


def seconds_after_change(path, build):
    before = path.stat()
    try:
        os.utime(path)
        return seconds_of(build)
    finally:
        os.utime(path, ns=(before.st_atime_ns, before.st_mtime_ns))


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--jobs", required=True)
    arguments.add_argument("--preset", default="dev")
    arguments.add_argument("--target", default="all")
    given = arguments.parse_args()

    def build():
        run("cmake", "--build", FOLDER, "--parallel", given.jobs, "--target", given.target)

    shutil.rmtree(FOLDER, ignore_errors=True)
    try:
        run("cmake", "--preset", given.preset, "-B", FOLDER)
        print(f"{seconds_of(build):6.1f} s for a clean build, {given.jobs} jobs", flush=True)
        for changed in (SOURCE, HEADER):
            seconds = seconds_after_change(changed, build)
            print(f"{seconds:6.1f} s after a change to {changed.relative_to(ROOT)}", flush=True)
    finally:
        shutil.rmtree(FOLDER, ignore_errors=True)


if __name__ == "__main__":
    main()
