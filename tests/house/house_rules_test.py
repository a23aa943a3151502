#!/usr/bin/env python3
"""Each rule of the house finds what is planted against it, at its line, and lets its neighbour pass."""
import os
import tempfile
import unittest

from house_rules import violations
from sourcetree import code_of

HEADER = '#pragma once\n'


def found(files):
    with tempfile.TemporaryDirectory() as root:
        for path, text in files.items():
            full = os.path.join(root, path)
            os.makedirs(os.path.dirname(full), exist_ok=True)
            with open(full, 'w', encoding='utf-8') as file:
                file.write(text)
        return violations(root)


class HouseRules(unittest.TestCase):
    def assert_only(self, files, *parts):
        """There is one violation, and it holds all the parts."""
        lines = found(files)
        self.assertEqual(len(lines), 1, lines)
        for part in parts:
            self.assertIn(part, lines[0])

    def assert_clean(self, files):
        self.assertEqual(found(files), [])


class Budgets(HouseRules):
    def test_full_files_pass(self):
        self.assert_clean({'common/a.h': HEADER + '\n' * 149, 'common/a.cpp': '\n' * 400})

    def test_long_header(self):
        self.assert_only({'common/a.h': HEADER + '\n' * 150}, 'common/a.h:151: 151 lines')

    def test_long_cpp(self):
        self.assert_only({'common/a.cpp': '\n' * 401}, 'common/a.cpp:401: 401 lines')

    def test_tests_may_be_long(self):
        self.assert_clean({'tests/common/a.cpp': '\n' * 401})


class IncludeArrows(HouseRules):
    def test_downward(self):
        self.assert_clean({
            'apps/korvectl/main.cpp': '#include "connectionmanagement/a.h"\n#include "idl/korve.hh"\n',
            'connectionmanagement/a.cpp': '#include "korvebase/a.h"\n#include "coresupport/a.h"\n',
            'korvebase/pelin/a.cpp': '#include "objectmodel/a.h"\n#include "common/a.h"\n#include <QString>\n',
            'common/a.h': HEADER + '#include "korvebase/korvebase_export.h"\n',
            'platform/orbconnection/a.cpp': '#include "valuetreelib/a.h"\n#include "objectbase/a.h"\n#include "a.moc"\n',
            'benchmarks/a.cpp': '#include "benchmarks/support/a.h"\n#include "record.pb.h"\n',
            'tests/common/a.cpp': '#include "tests/support/a.h"\n#include "installation/a.h"\n'})

    def test_platform_knows_nothing_above(self):
        self.assert_only({'platform/valuetreelib/a.cpp': '\n#include "objectmodel/a.h"\n'},
                         'platform/valuetreelib/a.cpp:2: valuetreelib may not include "objectmodel/a.h"')

    def test_in_angle_brackets_too(self):
        self.assert_only({'common/a.cpp': '#include <korvebase/a.h>\n'}, 'common/a.cpp:1:')

    def test_neighbours_that_do_not_know_each_other(self):
        for place, target in (('common', 'objectmodel'), ('objectmodel', 'common'), ('apps', 'installation'),
                              ('installation', 'apps'), ('platform/objectbase', 'appruntime'),
                              ('platform/appruntime', 'objectbase'), ('platform/coresupport', 'objectbase')):
            with self.subTest(place=place):
                self.assert_only({f'{place}/a.cpp': f'#include "{target}/a.h"\n'}, f'{place}/a.cpp:1:', target)

    def test_products_do_not_include_tests(self):
        self.assert_only({'korvebase/a.cpp': '#include "tests/support/a.h"\n'}, 'korvebase/a.cpp:1:')

    def test_path_is_from_the_root(self):
        for path in ('a.h', '../common/a.h', 'platform/coresupport/a.h'):
            with self.subTest(path=path):
                self.assert_only({'common/b.cpp': f'#include "{path}"\n'}, 'common/b.cpp:1:', 'not written from')

    def test_what_is_not_code_includes_nothing(self):
        self.assert_clean({'common/a.cpp': '/*\n#include "a.h"\n*/\nauto t = R"(\n#include "a.h"\n)";\n'})

    def test_unknown_folder(self):
        self.assert_only({'misc/a.cpp': ''}, 'misc:1:', 'no place')


class Headers(HouseRules):
    def test_pragma_after_a_comment(self):
        self.assert_clean({'common/a.h': '// Why.\n#pragma once\nint a;\n'})

    def test_pragma_late(self):
        self.assert_only({'common/a.h': '\n#include <QString>\n#pragma once\n'}, 'common/a.h:2:', '#pragma once')

    def test_pragma_missing(self):
        self.assert_only({'common/a.h': ''}, 'common/a.h:1:', '#pragma once')

    def test_q_object_alone(self):
        self.assert_clean({'common/a.h': HEADER + 'class A : public QObject\n{\n    Q_OBJECT\n};\n'})

    def test_q_object_in_company(self):
        self.assert_only({'common/a.h': HEADER + 'class A : public QObject { Q_OBJECT };\n'}, 'common/a.h:2:', 'Q_OBJECT')

    def test_macros(self):
        self.assert_clean({'common/a.h': HEADER + 'public Q_SLOTS:\nQ_SIGNALS:\nvoid f(int slots);\n'})

    def test_keywords(self):
        for line in ('signals:', '  public slots:', 'private slots :', '    emit done();'):
            with self.subTest(line=line):
                self.assert_only({'common/a.h': HEADER + line + '\n'}, 'common/a.h:2:', 'Q_SIGNALS')


class Sleeps(HouseRules):
    def test_planted(self):
        for line in ('std::this_thread::sleep_for(1s);', 'QThread::msleep(5);', 'usleep (5);', 'QTest::qWait(50);',
                     'std::this_thread::sleep_until(then);', 'QTest::qSleep(5);'):
            with self.subTest(line=line):
                self.assert_only({'tests/common/a_test.cpp': '\n' + line + '\n'}, 'tests/common/a_test.cpp:2:')

    def test_in_scripts(self):
        self.assert_only({'tests/live/a.sh': 'true\nsleep 1\n'}, 'tests/live/a.sh:2:')
        self.assert_only({'tests/live/a.py': 'time.sleep(1)\n'}, 'tests/live/a.py:1:')

    def test_waiting_passes(self):
        self.assert_clean({'tests/common/a_test.cpp': '// never sleep(1)\nQTest::qWaitFor(done, 50);\nspy.wait(5);\n'})

    def test_product_code_is_not_judged(self):
        self.assert_clean({'korvebase/a.cpp': 'QThread::msleep(5);\n'})


class Traces(HouseRules):
    def test_past_the_level(self):
        self.assert_only({'common/a.cpp': '\n_Q_Trace(text, sourceName, __LINE__);\n'}, 'common/a.cpp:2:', 'traceAt()')

    def test_behind_the_level(self):
        self.assert_clean({'common/a.cpp': 'traceAt(level, sourceName, [] { return text; }); // no _Q_Trace\n',
                           'platform/coresupport/trace.h': HEADER + 'void _Q_Trace(const QString &text);\n'})


class Documents(HouseRules):
    def test_folder_with_readme(self):
        self.assert_clean({'common/CMakeLists.txt': 'build()', 'common/README.md': '\n' * 15, 'CMakeLists.txt': 'all()'})

    def test_folder_that_waits_for_its_first_class(self):
        self.assert_clean({'common/CMakeLists.txt': '# Comes here.\n\n'})

    def test_folder_without_readme(self):
        self.assert_only({'common/CMakeLists.txt': '#\nbuild()\n'}, 'common/README.md:1: missing')

    def test_long_readme(self):
        self.assert_only({'common/CMakeLists.txt': 'build()', 'common/README.md': '\n' * 16}, 'common/README.md:16:')

    def test_map_of_the_folders(self):
        readme = '## The folders\n\n| `common/` | errors |\n'
        self.assert_clean({'README.md': readme, 'common/a.cpp': ''})
        self.assert_only({'README.md': readme, 'common/a.cpp': '', 'apps/a.cpp': ''}, 'README.md:1:', 'apps/')

    def test_quoted_file(self):
        quote = 'Text\n\n<!-- docs/a.cpp -->\n```cpp\nint a;\n```\n'
        self.assert_clean({'README.md': quote, 'docs/a.cpp': 'int a;\n'})
        self.assert_only({'README.md': quote, 'docs/a.cpp': 'int b;\n'}, 'README.md:3:', 'docs/a.cpp')
        self.assert_only({'README.md': quote}, 'README.md:3:', 'docs/a.cpp')

    def test_links(self):
        self.assert_clean({'docs/a.md': '[b](../b.md) [w](https://example.org/x) [c](../b.md#top)', 'b.md': ''})
        self.assert_only({'docs/a.md': '\nsee [b](b.md)\n', 'b.md': ''}, 'docs/a.md:2:', 'b.md')

    def test_packages(self):
        script = '#!\nreadonly packages=(\n    cmake\n)\nreadonly fuzzPackages=(clang)\n'
        self.assert_clean({'korve': script, 'docs/dependencies.md': '`cmake` `clang`'})
        self.assert_only({'korve': script, 'docs/dependencies.md': '`cmake`'}, 'korve:5:', 'clang')


class Source(HouseRules):
    def test_foreign_folders_are_not_looked_at(self):
        self.assert_clean({'build/dev/a.h': '', '.cache/a.h': '', 'out/CMakeCache.txt': '', 'out/a.h': ''})

    def test_code_keeps_lines_and_columns(self):
        text = 'a /* x\n y */ b("//", \'"\', \'\\\'\'); // c\nd'
        code = code_of(text)
        self.assertEqual([len(line) for line in code.splitlines()], [len(line) for line in text.splitlines()])
        self.assertEqual(code.split(), ['a', 'b(', ',', ',', ');', 'd'])


if __name__ == '__main__':
    unittest.main()
