"""qln-fp-tree page: the file that it writes. page_test.py looks at it in a browser."""

import json
import os
import pathlib
import re
import subprocess
import unittest

from harness import PROGRAM, UNPRIVILEGED, EndToEnd, record

TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
CONTENT = b"// </script>\xff\xe2\x82\xac<!--&//-V501 \\\"\x01\r\nx //-V5\n"


class PageFile(EndToEnd):
    def run_page(self, output, *reports, around=(), **options):
        done = subprocess.run([*around, TOOL, "page", "-r", "root", "-o", output, *reports],
                              capture_output=True, cwd=self.scratch, **options)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def setUp(self):
        super().setUp()
        at = CONTENT.index(b"//-")
        path = self.source("a/b.cpp", CONTENT)
        self.one, self.two = (
            self.raw_report(name, record(path, CONTENT, {1: [(501, at, at + 7)], **others}))
            for name, others in (("one", {0: [], 2: [(5, 2, 7)]}), ("two", {})))

    def test_the_data(self):
        self.assertEqual(self.run_page("page.html", self.one, self.two), (0, "", ""))
        page = (self.scratch / "page.html").read_text()
        text = re.search(r'<script type="application/json" id="data">(.*?)</script>', page, re.S)[1]
        self.assertTrue(text.isascii() and not set("<>&") & set(text))
        data = json.loads(text)
        self.assertEqual(data["reports"], [["one", 1, 2], ["two", 1, 1]])
        self.assertEqual((data["warnings"], data["around"], data["codes"], data["votes"]),
                         ([], [2, 2], ["V501", "V005"], [["g", "ll"], ["s", "ln"]]))
        shown = CONTENT.decode(errors="replace").replace("\r\n", "\n").rstrip("\n")
        at = shown.index("//-")
        self.assertEqual(data["files"], [
            ["a/b.cpp", 0, [1, 1, 0, at, at + 7, 0, 2, 1, 1, 2, 7, 1], [1, shown]]])
        self.assertEqual([path.name for path in self.scratch.glob("page*")], ["page.html"])

    def test_reports_of_different_texts(self):
        path = self.root / "a/b.cpp"
        for name, text in ("other", b"a"), ("third", b"b"):
            self.raw_report(name, record(path, text, {1: [(501, 0, 7)]}))
        status, out, errors = self.run_page("page.html", self.one, "other", self.two, "third")
        self.assertEqual((status, out, errors.count("\n")), (1, "", 1))
        data = json.loads(re.search(r'id="data">(.*?)</script>', (
            self.scratch / "page.html").read_text(), re.S)[1])
        self.assertEqual([report for report, *_ in data["reports"]], ["one", "two"])
        for warning, name in zip(data["warnings"], ("other", "third"), strict=True):
            self.assertTrue(warning.endswith(f"Another text than before was seen by {name}"), warning)

    def test_a_folder_that_may_not_be_written(self):
        other = self.source("a/c.cpp", b"//-V5\n")
        (self.root / "a").chmod(0o555)
        self.addCleanup((self.root / "a").chmod, 0o755)
        self.raw_report("other", record(other, b"//-V5\n", {1: [(5, 0, 5)]}))
        self.run_page("page.html", self.one, "other", around=UNPRIVILEGED if os.geteuid() == 0 else ())
        self.assertEqual((self.scratch / "page.html").read_text().count(',"source in a folder that may not be written",'), 2)

    def test_line_ends_and_long_lines(self):
        lines = [b"1\r", b"2\n\r", b"3\r\n", b"4\n", b"\n", b"6\r", b"7" * 3000 + b"\r", b"8"]
        content = b"".join(lines)
        path = self.source("ends.cpp", content)
        other = record(self.source("other.cpp", b"//-V9"), b"//-V9", {1: [(9, 0, 5)]})
        self.raw_report("ends", record(path, content, {
            line: [(5, 2990, 2995)] for line in (3, 7, 70)}), other)
        self.run_page("page.html", "ends")
        page = (self.scratch / "page.html").read_text()
        hunks = json.loads(re.search(r"\[(1,\"1.*?)\]\]", page)[0][:-1])
        data = json.loads(re.search(r'id="data">(.*?)</script>', page, re.S)[1])
        self.assertEqual([file[0] for file in data["files"]], ["ends.cpp", "other.cpp"])
        self.assertEqual(hunks, [1, "1\n2\n3\n4\n\n6\n[\u2026 2790 bytes left out \u2026]" +
                                 "7" * 210 + "\n8"])

    def test_what_fails(self):
        (self.scratch / "full").symlink_to("/dev/full")  # What goes wrong must not reach the device.
        for output, report, reason in (
                ("full", self.one, "cannot write full: No space left on device"),
                ("none/page.html", self.one, "cannot write none/page.html: No such file or directory"),
                ("page.html", "none", "no such report: none")):
            self.assertEqual(self.run_page(output, report), (1, "", f"qln-fp-tree: {reason}\n"))
        self.assertFalse((self.scratch / "page.html").exists())


if __name__ == "__main__":
    unittest.main()
