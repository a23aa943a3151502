#!/usr/bin/env python3
"""Checks what no compiler checks of the rules of this house: house_rules.py ROOT

Prints one line PATH:LINE: TEXT per violation and ends with 1 if there is any.
"""
import os
import re
import sys

from arrows import allowed, is_ours, place_of
from sourcetree import SourceTree

HEADER_LINES = 150
CPP_LINES = 400
README_LINES = 15
# A module includes the export header of the library that it is part of, though that bears the name of one above it.
GENERATED = ('.moc', '.pb.h', '_export.h')


def budgets(tree):
    """No header above 150 lines, no .cpp above 400; tests may be longer."""
    for ending, most in (('.h', HEADER_LINES), ('.cpp', CPP_LINES)):
        for path in tree.ending_in(ending):
            count = len(tree.lines(path))
            if count > most and place_of(path) != 'tests':
                yield f'{path}:{most + 1}: {count} lines; {most} is the most for {ending}, split it by responsibility'


def includes(tree):
    """Pairs of place and included path of all C++ files."""
    directive = re.compile(r'\s*#\s*include\s*(["<])([^">]+)[">]')
    for path in tree.ending_in('.h', '.cpp'):
        lines = tree.lines(path)
        for number, code in tree.code_lines(path):
            found = directive.match(lines[number - 1])
            if found and 'include' in code:
                yield path, number, found[1] == '"', found[2]


def include_arrows(tree):
    """A file includes its own folder and what lies below it, by the path from the root."""
    for path, number, quoted, included in includes(tree):
        target = included.split('/')[0]
        if included.endswith(GENERATED):
            continue
        if '/' in included and is_ours(target):
            if not allowed(place_of(path), target):
                yield f'{path}:{number}: {place_of(path)} may not include "{included}": arrows run downward only'
        elif quoted:
            yield f'{path}:{number}: "{included}" is not written from the root (or from platform/)'


def known_folders(tree):
    """Each folder with C++ has its place among the arrows."""
    for place in sorted({place_of(path) for path in tree.ending_in('.h', '.cpp')}):
        if not is_ours(place):
            yield f'{place}:1: this folder has no place yet in tests/house/arrows.py'


def pragma_once(tree):
    """`#pragma once` is the first line of code of a header."""
    for path in tree.ending_in('.h'):
        first = next(((number, line) for number, line in tree.code_lines(path) if line.strip()), (1, ''))
        if first[1].strip() != '#pragma once':
            yield f'{path}:{first[0]}: #pragma once comes first'


def no_sleeps_in_tests(tree):
    """A test waits for a condition, never for time. (This folder plants what it forbids.)"""
    sleep = re.compile(r'\b(u|m|nano|q)?sleep(_for|_until)?\s*\(|\bqWait\s*\(|^\s*sleep\s+[\d$]', re.IGNORECASE)
    for path in tree.ending_in('.h', '.cpp', '.py', '.sh'):
        if place_of(path) == 'tests' and not path.startswith('tests/house/'):
            for number, line in tree.code_lines(path):
                if sleep.search(line):
                    yield f'{path}:{number}: a test waits, bounded, for an event; it never sleeps'


def traces_behind_their_level(tree):
    """Only traceAt() writes a trace, since it builds the text behind the test of its level."""
    for path in tree.ending_in('.h', '.cpp'):
        if place_of(path) not in ('coresupport', 'tests'):
            for number, line in tree.code_lines(path):
                if re.search(r'\b_Q_Trace\b', line):
                    yield f'{path}:{number}: trace by traceAt(), which builds no text that nobody wants'


def qt_keywords(tree):
    """Q_SIGNALS, Q_SLOTS and Q_EMIT instead of Qt's keywords."""
    keyword = re.compile(r'^\s*(signals|((public|protected|private)\s+)?slots)\s*:(?!:)|^\s*emit\b')
    for path in tree.ending_in('.h', '.cpp'):
        for number, line in tree.code_lines(path):
            if keyword.search(line):
                yield f'{path}:{number}: write Q_SIGNALS, Q_SLOTS, Q_EMIT'


def q_object_alone(tree):
    """AUTOMOC overlooks a Q_OBJECT that shares its line."""
    for path in tree.ending_in('.h', '.cpp'):
        for number, line in tree.code_lines(path):
            if re.search(r'\bQ_OBJECT\b', line) and line.strip() != 'Q_OBJECT':
                yield f'{path}:{number}: Q_OBJECT has a line of its own'


def folder_readmes(tree):
    """A folder that is built opens with a README.md of at most 15 lines."""
    for path in tree.ending_in('CMakeLists.txt'):
        folder = os.path.dirname(path)
        readme = os.path.join(folder, 'README.md')
        if not folder or all(line.lstrip().startswith('#') for line in tree.lines(path) if line.strip()):
            continue
        if readme not in tree.paths:
            yield f'{readme}:1: missing; say what is here, what it may include, and which file to read first'
        elif len(tree.lines(readme)) > README_LINES:
            yield f'{readme}:{README_LINES + 1}: {len(tree.lines(readme))} lines; {README_LINES} is the most'


def folder_map(tree):
    """The root's README, where it maps the folders, leaves none out."""
    text = tree.text('README.md') if 'README.md' in tree.paths else ''
    if '## The folders' in text:
        for folder in sorted({path.split('/')[0] for path in tree.paths if '/' in path}):
            if f'| `{folder}/` |' not in text:
                yield f'README.md:1: the map of the folders does not show {folder}/'


def quoted_files(tree):
    """A code block below <!-- PATH --> is that file, to the letter."""
    block = re.compile(r'^<!-- (\S+) -->\n```\w*\n(.*?)^```$', re.DOTALL | re.MULTILINE)
    for path in tree.ending_in('.md'):
        text = tree.text(path)
        for found in block.finditer(text):
            if found[1] not in tree.paths or tree.text(found[1]) != found[2]:
                yield f'{path}:{text.count(chr(10), 0, found.start()) + 1}: the block differs from {found[1]}'


def links(tree):
    """A link inside the repository leads somewhere."""
    for path in tree.ending_in('.md'):
        for number, line in enumerate(tree.lines(path), start=1):
            for target in re.findall(r'\]\(([^)#:]+)[^):]*\)', line):
                if not os.path.exists(os.path.join(tree.root, os.path.dirname(path), target)):
                    yield f'{path}:{number}: the link leads nowhere: {target}'


def documented_packages(tree):
    """Every Debian package that ./korve installs has its reason in docs/dependencies.md."""
    if 'korve' not in tree.paths:
        return
    reasons = tree.text('docs/dependencies.md') if 'docs/dependencies.md' in tree.paths else ''
    script = tree.text('korve')
    for packages in re.finditer(r'^readonly \w*[pP]ackages=\((.*?)\)', script, re.DOTALL | re.MULTILINE):
        line = script.count('\n', 0, packages.start()) + 1
        for package in packages[1].split():
            if f'`{package}`' not in reasons:
                yield f'korve:{line}: docs/dependencies.md does not say what {package} is for'


RULES = (budgets, include_arrows, known_folders, pragma_once, no_sleeps_in_tests, traces_behind_their_level,
         qt_keywords, q_object_alone, folder_readmes, folder_map, quoted_files, links, documented_packages)


def violations(root):
    tree = SourceTree(root)
    return [violation for rule in RULES for violation in rule(tree)]


def main():
    found = violations(sys.argv[1])
    print('\n'.join(found) or f'the source holds to all {len(RULES)} rules')
    return 1 if found else 0


if __name__ == '__main__':
    sys.exit(main())
