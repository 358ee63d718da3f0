"""The look at what is cut, against what a compiler sees, in the headers of this machine.

Markers are planted anywhere in lines of installed headers. Of the lines that are said to be safe,
none may change what clang's raw lexer finds, comments aside; of those that change nothing, few may be
refused. And translation units give the same object files before and after their cleanup.

With QLN_CUT_HEADERS=1000 in the environment, so many headers are taken instead of a few.
"""

import itertools
import os
import pathlib
import random
import re
import shutil
import subprocess
import unittest

from harness import EndToEnd, PROGRAM, record

DRIVER = pathlib.Path(os.environ.get("QLN_CUT_SAFETY_DRIVER",
                                     pathlib.Path(PROGRAM).parent / "tests/cut_safety_driver"))
HEADERS = int(os.environ.get("QLN_CUT_HEADERS", "25"))
CLANG = shutil.which("clang++-19") or shutil.which("clang++")
PLACES = ["/usr/include", "/usr/lib/llvm-19/include", "/usr/lib/llvm-19/lib/clang/19/include"]
TEXT_BEHIND = [b"", b"", b" ", b" \\", b" reason", b" // reason", b"//-V502", b" x = 1;", b" */",
               b" /* y */", b"*", b"/", b"\\", b"\"", b"'"]
TEXT_BEFORE = [b"", b"", b"", b" ", b"/", b"//", b"/* ", b"\\", b"\"", b"'", b"R\"(", b"*", b"1'0",
               b"u8R\"x(", b"#include <"]

# What is put behind the lines of translation units, which must compile before they are cleaned.
SOURCES = pathlib.Path(__file__).parents[2] / "src"
UNITS = ["companion/selection/globs.cpp", "merge/paths/path_order.cpp",
         "merge/hashing/sha1_blocks_portable.cpp"]
BEHIND_LINES = [b"", b"  //-V501", b"//-V501 said at length", b" //-V501 // said", b"",
                b" /* //-V501 */", b" //-V501 //-V501 "]
BEHIND_UNIT = b"""
char const* Raw() { return R"(//-V501
  //-V501)"; }  //-V501
//-V501 \\
int never =;
//-V501
//-V501 \\
// a comment
char const* Plain() { return "//-V501"; }
"""


def installed_headers(count):
    headers = sorted(path for place in PLACES for path in pathlib.Path(place).rglob("*")
                     if path.suffix in {".h", ".hpp", ""})
    random.Random(7).shuffle(headers)
    fitting = (path for path in headers if path.is_file() and path.stat().st_size < 60_000 and
               b"#" in path.read_bytes())
    return list(itertools.islice(fitting, count))


def plant(content, choose, count):
    """The content with markers put into some lines, and {line: [(code, begin, end)]} of them."""
    lines = re.split(rb"(\r\n|\n\r|\n|\r)", content)  # Every other one is a line end.
    markers = {}
    for number in choose.sample(range(len(lines) // 2 + 1), min(count, len(lines) // 2 + 1)):
        line = lines[2 * number]
        at = choose.choice([len(line), choose.randint(0, len(line))])
        before = line[:at] + (choose.choice(TEXT_BEFORE) if choose.random() < 0.3 else b"")
        rest = line[at:] if choose.random() < 0.8 else b""
        reason = choose.choice([b"", b"", b"", b" said", b" *"])
        behind = choose.choice(TEXT_BEHIND) if choose.random() < 0.5 else b""
        lines[2 * number] = before + b"//-V501" + reason + behind + rest
        markers[number + 1] = [(501, len(before), len(before) + len(b"//-V501" + reason))]
    return b"".join(lines), dict(sorted(markers.items()))


def without(content, markers, listed):
    lines = re.split(rb"(\r\n|\n\r|\n|\r)", content)
    for number in listed:
        [(_, begin, end)] = markers[number]
        line = lines[2 * number - 2]
        lines[2 * number - 2] = line[:begin] + line[end:]
    return b"".join(lines)


# Kind, text without splices, line; flags and the text with splices are passed over.
TOKEN = re.compile(rb"^(\w+) '(.*?)'\t(?: \[\w+\])*(?: \[UnClean='.*?'\])?\t"
                   rb"Loc=<[^<>]*?:(\d+):\d+>$", re.MULTILINE | re.DOTALL)


def raw_tokens(path):
    """What clang finds in the file: kind, text, line, whether it begins a line or follows a space."""
    done = subprocess.run([CLANG, "-cc1", "-x", "c++", "-std=c++20", "-w", "-dump-raw-tokens",
                           str(path)], capture_output=True)
    tokens, begins, follows = [], True, True
    for kind, text, line in TOKEN.findall(done.stderr):
        if kind == b"comment":
            follows = True
        elif kind == b"unknown" and not text.strip(b" \t\v\f\r\n\0"):
            follows = follows or text != b""
            begins = begins or b"\n" in text or b"\r" in text
        elif kind == b"unknown" and text.startswith(b"/*"):
            tokens.append((b"comment that is not closed",))
        elif kind != b"eof":
            tokens.append((kind, text, line, begins, follows))
            begins = follows = False
    return tokens


@unittest.skipUnless(CLANG, "clang++ is not here, whose tokens are compared")
class CutSafety(EndToEnd):
    def unsafe_lines(self, report):
        done = subprocess.run([DRIVER, report, self.root], capture_output=True, cwd=self.scratch)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        unsafe = {}
        for line in done.stdout.decode().splitlines():
            name, number, why = line.split(":", 2)
            unsafe.setdefault(name, {})[int(number)] = why.strip()
        return unsafe

    def look_at(self, planted):
        """Plants are {name: (content, markers)}; the lines of each that are not safe."""
        report = self.structured_report("report.json", *(
            record(f"|?|/{name}", content, markers)
            for name, (content, markers) in planted.items()))
        for name, (content, _) in planted.items():
            self.source(name, content)
        return self.unsafe_lines(report)

    def tokens(self, content):
        return raw_tokens(self.source("tokens.h", content))

    def test_no_cut_that_is_called_safe_changes_a_token(self):
        choose = random.Random(7)
        planted = {}
        for number, path in enumerate(installed_headers(HEADERS)):
            content, markers = plant(path.read_bytes(), choose, choose.choice([1, 1, 2, 5, 30]))
            planted[f"{number}.h"] = (content, markers)
        self.assertTrue(planted)
        unsafe = self.look_at(planted)
        wrong, safe, refused = [], 0, []
        for name, (content, markers) in planted.items():
            before = self.tokens(content)
            self.assertTrue(before, name)
            kept = [line for line in markers if line not in unsafe.get(name, {})]
            after = self.tokens(without(content, markers, kept))
            if after != before:
                wrong.append((name, [[part[:80] for part in token[:3]]
                                     for token in sorted(set(before) ^ set(after))[:4]]))
            safe += len(kept)
            # What is refused, one by one: each with those that go.
            for line, why in list(unsafe.get(name, {}).items())[:5]:
                cut = without(content, markers, sorted([*kept, line]))
                if self.tokens(cut) == before:
                    refused.append((name, line, why, content.split(b"\n")[line - 1:line + 1]))
        print(f"{len(planted)} headers, {safe} safe markers, refused without need: {len(refused)}")
        if os.environ.get("QLN_CUT_VERBOSE"):
            print(*refused, sep="\n")
        self.assertEqual(wrong, [])
        self.assertLess(100 * len(refused), 3 * safe)

    def test_objects_are_the_same_after_a_cleanup_of_what_is_safe(self):
        planted, markers = {}, {}
        for name in UNITS:
            lines = (SOURCES / name).read_bytes().split(b"\n")
            lines = [line + behind for line, behind in zip(lines, itertools.cycle(BEHIND_LINES))]
            content = b"\n".join(lines) + BEHIND_UNIT
            found = {}
            for number, line in enumerate(content.split(b"\n"), 1):
                for at in re.finditer(b"//-V501( *[\\\\])?", line):
                    found.setdefault(number, []).append((501, *at.span()))
            planted[name] = (content, found)
        unsafe = self.look_at(planted)
        before = {name: self.object_of(name) for name in UNITS}
        for name, (_, found) in planted.items():
            markers[name] = {line: ranges for line, ranges in found.items()
                             if line not in unsafe[name]}
            self.assertGreater(len(markers[name]), 10)
            self.assertGreater(len(unsafe[name]), 4)
        report = self.structured_report("safe.json", *(
            record(f"|?|/{name}", content, markers[name])
            for name, (content, _) in planted.items()))
        self.expect(["cleanup", "-r", "root", report])
        for name, (content, _) in planted.items():
            self.assertLess(len((self.root / name).read_bytes()), len(content))
            self.assertTrue(self.object_of(name) == before[name], name)

    def object_of(self, name):
        output = self.scratch / "unit.o"
        subprocess.run([CLANG, "-std=c++20", "-g0", "-O1", "-c", "-I", SOURCES, "-o", output, name],
                       cwd=self.root, check=True)
        return output.read_bytes()


if __name__ == "__main__":
    unittest.main()
