"""Markers planted in real headers, reported by three configurations, and cleaned again."""

import pathlib
import random
import re
import shutil
import subprocess
import unittest

from harness import BACKUP, PROGRAM, EndToEnd, record
from schemas import validate

INSTALLED = ("/usr/include", "/usr/lib/llvm-19/include/c++", "/usr/src/googletest")
SEED = 20240229
FEWEST = 1000


def real_headers():
    """Some two thousand different headers of the machine, as installed."""
    contents = {path.read_bytes() for root in INSTALLED for path in pathlib.Path(root).rglob("*")
                if path.suffix in ("", ".h", ".hpp", ".hxx", ".cc") and path.is_file()}
    texts = sorted(content for content in contents if content and b"//-V" not in content)
    return random.Random(SEED).sample(texts, min(len(texts), 2000))


def vary_line_ends(content, chance):
    """Some files in CR LF, some without a last line end; the rest as installed."""
    if chance.random() < 0.3 and b"\r" not in content:
        content = content.replace(b"\n", b"\r\n")
    return content.rstrip(b"\r\n") if chance.random() < 0.2 else content


class Planted:
    """A file with markers at the ends of random lines, and who says that each is redundant."""

    def __init__(self, content, chance):
        self.marked, self.expected = b"", b""
        self.reports = [{}, {}, {}]
        pieces = re.split(rb"(\r\n|\n\r|\r|\n)", content)
        for number, (text, end) in enumerate(zip(pieces[::2], pieces[1::2] + [b""]), 1):
            planted, agreed = text, True
            if (text or end) and not text.endswith((b"\\", b"*", b"/")) and chance.random() < 0.03:
                planted, agreed = self.plant(text, number, chance)
            self.marked += planted + end
            self.expected += (text if agreed else planted) + end

    def plant(self, text, number, chance):
        planted, markers = text, []
        for _ in range(chance.choice((1, 1, 2))):
            code = chance.randrange(1, 5000)
            marker = b"//-V%d" % code
            markers.append((code, len(planted), len(planted) + len(marker)))
            planted += marker
        agreed = chance.random() < 0.7
        dissenter = None if agreed else chance.randrange(3)
        for index, report in enumerate(self.reports):
            if index != dissenter:
                report[number] = markers
            elif chance.random() < 0.5:
                report[number] = [(code + 1, begin, end) for code, begin, end in markers]
        return planted, agreed


class RoundTrip(EndToEnd):
    def expect_patch(self, planted):
        """The companion's patch makes of a copy what a cleanup makes of the tree. It leaves out lines
        at whose end no marker can stand: those that a backslash joins with the next, for one."""
        tool = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
        preview = subprocess.run([tool, "preview", "-r", "root", "merged"], cwd=self.scratch,
                                 capture_output=True)
        left = set(re.findall(r"qln-fp-tree: root/(.*):\d+: ", preview.stderr.decode()))
        self.assertLess(len(left), len(planted) / 10)
        patched = shutil.copytree(self.root, self.scratch / "patched")
        subprocess.run(["patch", "-s", "-p1", "--binary", "-d", patched], input=preview.stdout,
                       check=True)
        self.assertEqual([name for name, file in planted.items() if name not in left
                          and (patched / name).read_bytes() != file.expected], [])

    def test_real_headers(self):
        chance = random.Random(SEED)
        headers = real_headers()
        self.assertGreater(len(headers), FEWEST)
        planted = {}
        for index, content in enumerate(headers):
            content = vary_line_ends(content, chance)
            # Every bare name stands in two folders, and some stand in many.
            for folder in "one", "two":
                name = f"{folder}/{index // 100}/header{index % 150}.h"
                planted[name] = Planted(content, chance)
                self.source(name, planted[name].marked)

        reports = [self.raw_report(f"configuration{number}", *(
            record(self.root / name, file.marked, file.reports[number])
            for name, file in planted.items())) for number in range(3)]
        self.expect(["merge", "-r", "root", "-o", "merged", *reports])
        merged = validate(self.scratch / "merged", "structured-report")
        self.expect(["report", "-o", "warnings", "merged"])
        warnings = validate(self.scratch / "warnings", "warnings-report")["warnings"]
        self.assertEqual(len(warnings), sum(len(line["markers"]) for file in merged["files"]
                                            for line in file["lines"]))
        self.expect_patch(planted)
        self.expect(["cleanup", "-r", "root", "merged"])

        expected = {}
        for name, file in planted.items():
            expected[name] = file.expected
            if file.expected != file.marked:
                expected[name + BACKUP] = file.marked
        tree = self.tree()
        self.assertEqual(tree.keys(), expected.keys())
        self.assertEqual([name for name in tree if tree[name] != expected[name]], [])


if __name__ == "__main__":
    unittest.main()
