"""qln-fp-tree page: the file that it writes. page_test.py looks at it in a browser."""

import json
import os
import pathlib
import re
import resource
import subprocess
import unittest

from harness import PROGRAM, EndToEnd, record

TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
CONTENT = b"</script>\xff\xe2\x82\xac<!--&//-V501 \\\"\x01\r\nx //-V5\n"


class PageFile(EndToEnd):
    def run_page(self, output, *reports, **options):
        done = subprocess.run([TOOL, "page", "-r", "root", "-o", output, *reports],
                              capture_output=True, cwd=self.scratch, **options)
        return done.returncode, done.stdout.decode(), done.stderr.decode()

    def setUp(self):
        super().setUp()
        at = CONTENT.index(b"//")
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
        self.assertEqual((data["codes"], data["votes"]),
                         (["V501", "V005"], [["g", "l", "l"], ["s", "l", "n"]]))
        shown = CONTENT.decode(errors="replace").replace("\r\n", "\n").rstrip("\n")
        at = shown.index("//")
        self.assertEqual(data["files"], [
            ["a/b.cpp", 0, [1, 1, at, at + 7, 0, 0, 2, 1, 2, 7, 1, 1], [1, shown]]])
        self.assertEqual([path.name for path in self.scratch.glob("page*")], ["page.html"])

    def test_line_ends_and_long_lines(self):
        lines = [b"1\r", b"2\n\r", b"3\r\n", b"4\n", b"\n", b"6\r", b"7" * 3000 + b"\r", b"8"]
        content = b"".join(lines)
        path = self.source("ends.cpp", content)
        self.raw_report("ends", record(path, content, {
            line: [(5, 2990, 2995)] for line in (3, 7, 70)}))
        self.run_page("page.html", "ends")
        page = (self.scratch / "page.html").read_text()
        hunks = json.loads(re.search(r"\[(1,\"1.*?)\]\]", page)[0][:-1])
        self.assertEqual(hunks, [1, "1\n2\n3\n4\n\n6\n" + "7" * 2000 + "\u2026\n8"])

    def test_what_fails(self):
        for output, report, reason in (
                ("/dev/full", self.one, "cannot write /dev/full: No space left on device"),
                ("none/page.html", self.one, "cannot write none/page.html: No such file or directory"),
                ("page.html", "none", "no such report: none")):
            self.assertEqual(self.run_page(output, report), (1, "", f"qln-fp-tree: {reason}\n"))
        self.assertFalse((self.scratch / "page.html").exists())

    @unittest.skipIf("QLN_WIDE_ADDRESSES" in os.environ, "sanitizers keep their memory in files")
    def test_an_older_page_stays(self):
        (self.scratch / "old.html").write_text("old")
        limits = {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))}
        self.assertEqual(self.run_page("old.html", self.one, **limits), (
            1, "", "qln-fp-tree: cannot write old.html: File too large\n"))
        self.assertEqual((self.scratch / "old.html").read_text(), "old")


if __name__ == "__main__":
    unittest.main()
