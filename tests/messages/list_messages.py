#!/usr/bin/env python3
"""The messages of the task, read from its sources.

    list_messages.py --list    one line a message: module|mode|code|text

`code` is `*` where it is the result of the operation that failed. `text` is the format: a `%s` that
always stands for one of a few texts of the source is replaced by each of them, newlines are `\\n`,
and newlines at the end, which the log drops, are left out. The lines are sorted.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("quon5", "runtime", "base", "inc")
STRING = r'"(?:[^"\\]|\\.)*"'
LITERAL = re.compile(rf"{STRING}(?:\s*{STRING})*")
CONVERSION = re.compile(r"%[-+ #0]*\d*(?:\.\d+)?(?:hh|h|ll|l|z)?[diouxXeEfgGcs]")


def without_comments(text):
    return re.sub(rf"({STRING}|'(?:[^'\\]|\\.)')|//[^\n]*|/\*.*?\*/",
                  lambda found: found[1] or " ", text, flags=re.S)


def closing(text, start):
    """The position of the bracket that closes the one at `start`."""
    depth = 0
    for found in re.compile(rf"{STRING}|'(?:[^'\\]|\\.)'|[][(){{}}]").finditer(text, start):
        depth += (found[0] in "([{") - (found[0] in ")]}") if len(found[0]) == 1 else 0
        if depth == 0:
            return found.start()
    raise ValueError("unbalanced brackets after " + text[start:start + 60])


def parts(text):
    """The parts of `text` between commas that stand in no bracket."""
    result, start, at = [], 0, 0
    for found in re.finditer(rf"{STRING}|'(?:[^'\\]|\\.)'|[(\[{{,]", text):
        if found.start() < at:
            continue
        if found[0] == ",":
            result.append(text[start:found.start()].strip())
            start = found.end()
        elif found[0] in "([{":
            at = closing(text, found.start())
    return [part for part in result + [text[start:].strip()] if part]


def value(literal):
    """The text of adjacent string literals; none for another expression."""
    if not LITERAL.fullmatch(literal):
        return None
    joined = "".join(part[1:-1] for part in re.findall(STRING, literal))
    return re.sub(r"\\(.)", lambda found: {"n": "\n", "t": "\t"}.get(found[1], found[1]), joined)


class Source:
    DEFINITION = re.compile(r"(?<![\w.>])([A-Za-z_]\w*)\s*\(([^(){};]*(?:\([^(){};]*\)[^(){};]*)*)\)"
                            r"\s*(?:const\s*)?(?:noexcept\s*)?(?::[^;{}]*)?\{")

    def __init__(self, path, headers, all_sources):
        self.text = without_comments(path.read_text())
        self.headers = headers  # text of all headers: what they declare is called from other files
        self.all = all_sources
        self.functions = []
        for found in self.DEFINITION.finditer(self.text):
            if found[1] not in ("if", "for", "while", "switch", "return", "catch"):
                body = found.end() - 1
                names = [re.split(r"[^\w]+", re.sub(r"\[\w*\]$", "", p).rstrip(" )"))[-1]
                         for p in parts(found[2].replace("...", ""))]
                self.functions.append((found.start(1), body, closing(self.text, body), found[1],
                                       dict(zip(names, parts(found[2])))))

    def enclosing(self, at):
        around = [f for f in self.functions if f[1] < at < f[2]]
        return max(around, default=None)

    def calls(self, name):
        """The places and arguments of the calls of `name`: no type stands before it."""
        for found in re.finditer(rf"(?<!\w){name}\s*\(", self.text):
            before = re.search(r"(\w*)[\s*&]*$", self.text[max(0, found.start() - 60):found.start()])
            if before[1] in ("", "return", "else") or "&&" in before[0]:
                end = closing(self.text, found.end() - 1)
                yield found.start(), parts(self.text[found.end():end])

    def constant(self, expression):
        """The string literals that a name, or a member of a record of literals, stands for."""
        if LITERAL.fullmatch(expression):
            return [expression]
        if re.fullmatch(r"\w+", expression):
            found = re.search(rf"constexpr char {expression}\[\]\s*=\s*({LITERAL.pattern})", self.text)
            return [found[1]] if found else []
        found = re.fullmatch(r"\w+\.(\w+)", expression)
        for record in re.finditer(r"struct (\w+) \{([^}]*)\}", self.text) if found else ():
            members = re.findall(r"const char\* (\w+);", record[2])
            if found[1] in members:
                rows = re.findall(rf"constexpr {record[1]} \w+\s*=\s*\{{([^}}]*)\}}", self.text)
                return [parts(row)[members.index(found[1])] for row in rows]
        return []

    def literal(self, expression):
        found = self.constant(expression)
        return found[0] if len(found) == 1 else expression

    def expand(self, at, arguments):
        """The arguments of a call with parameters of the function around it replaced by what its
        callers hand in, one list for each way to it. What a header declares is followed to the
        other sources only where module, mode or format depend on it."""
        arguments = [self.literal(a) for a in arguments]
        function = self.enclosing(at)
        used = function is not None and [i for i, a in enumerate(arguments) if a in function[4]]
        shared = used and re.search(rf"\b{function[3]}\(", self.headers)
        if not used or (shared and not {0, 2, 4} & set(used)):
            yield self, arguments
            return
        calls = [(source, *call) for source in (self.all if shared else [self])
                 for call in source.calls(function[3])]
        for source, place, handed in calls:
            by_name = dict(zip(function[4], handed))
            yield from source.expand(place, [by_name.get(a, a) for a in arguments])
        if not calls:
            yield self, arguments

    def messages(self, numbers):
        for at, call in self.calls("log_error"):
            for source, (module, _, mode, code, form, *data) in self.expand(at, call):
                modules, forms = source.constant(module), source.constant(form)
                if not modules or not forms or mode not in numbers:
                    raise ValueError(f"cannot follow log_error({module}, {mode}, {form}, ...)")
                for literal in forms:
                    texts = iter([value(d) for d in data])
                    text = CONVERSION.sub(lambda found: next(texts, None) or found[0], value(literal))
                    yield (value(modules[0]), numbers[mode], numbers.get(code, "*"),
                           text.rstrip("\n").replace("\n", "\\n"))


def messages():
    paths = [p for folder in FOLDERS for p in sorted((ROOT / folder).rglob("*.[ch]*"))]
    headers = "".join(without_comments(p.read_text()) for p in paths if p.suffix == ".h")
    numbers = dict(re.findall(r"((?:REPORT|CODE)_\w+) = (-?\d+),", headers))
    sources = []
    sources += [Source(path, headers, sources) for path in paths if path.stem != "error_log"]
    return sorted({message for source in sources for message in source.messages(numbers)})


if __name__ == "__main__":
    if sys.argv[1:] != ["--list"]:
        sys.exit(__doc__)
    for message in messages():
        print("|".join(message))
