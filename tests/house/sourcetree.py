"""The files of a source tree, as the rules of the house look at them."""
import os
import re

# Comments and literals, the raw ones first. What they hold is not code.
NOT_CODE = re.compile(r'''//[^\n]* | /\*.*?\*/ | R"(?P<mark>[^()\s]*)\(.*?\)(?P=mark)"
                          | "(?:\\.|[^"\\\n])*" | '(?:\\.[^'\n]*|[^'\\\n])' ''', re.DOTALL | re.VERBOSE)


def code_of(text):
    """The C++ text with comments and literals blanked; every line keeps its number and length."""
    return NOT_CODE.sub(lambda found: re.sub(r'[^\n]', ' ', found.group()), text)


class SourceTree:
    """All files below a root, by path from there. Build folders and hidden ones are no part of the source."""

    def __init__(self, root):
        self.root = root
        self.paths = sorted(self._walk())

    def _walk(self):
        for folder, inner, names in os.walk(self.root):
            inner[:] = [name for name in inner if not self._is_foreign(folder, name)]
            for name in names:
                yield os.path.relpath(os.path.join(folder, name), self.root)

    def _is_foreign(self, folder, name):
        if name.startswith('.') or name == '__pycache__' or (name == 'build' and folder == self.root):
            return True
        return os.path.exists(os.path.join(folder, name, 'CMakeCache.txt'))

    def ending_in(self, *endings):
        return [path for path in self.paths if path.endswith(endings)]

    def text(self, path):
        with open(os.path.join(self.root, path), encoding='utf-8') as file:
            return file.read()

    def lines(self, path):
        return self.text(path).splitlines()

    def code_lines(self, path):
        """Pairs of line number and code; only in C++ are comments and literals blanked."""
        text = self.text(path)
        if path.endswith(('.h', '.cpp')):
            text = code_of(text)
        return enumerate(text.splitlines(), start=1)
