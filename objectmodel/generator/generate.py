"""Makes the classes of the object model from schema files.

    generate.py --list SCHEMA...                     prints the class names, one a line
    generate.py --headers H --sources S SCHEMA...    writes H/*.h and S/*.cpp
"""

import argparse
import pathlib
import sys

import header
import names
import schema
import source


def write_if_changed(path, text):
    """An unchanged file keeps its time stamp, so that nothing behind it is built again."""
    if path.exists() and path.read_text(encoding="utf-8") == text:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("schemas", nargs="+", help="schema files, read as one")
    arguments.add_argument("--list", action="store_true", help="print the class names only")
    arguments.add_argument("--headers", type=pathlib.Path, help="folder for the headers")
    arguments.add_argument("--sources", type=pathlib.Path, help="folder for the sources")
    given = arguments.parse_args()
    try:
        loaded = schema.load(given.schemas)
    except schema.SchemaError as error:
        sys.exit(str(error))
    if given.list:
        print("\n".join(loaded.classes))
        return
    for described in loaded.classes.values():
        stem = names.file_stem(described.name)
        write_if_changed(given.headers / f"{stem}.h", header.header(loaded, described))
        write_if_changed(given.sources / f"{stem}.cpp", source.source(loaded, described))


if __name__ == "__main__":
    main()
