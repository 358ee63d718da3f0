"""The warnings report, from the report command and from a cleanup."""

import unittest

from harness import BACKUP, EndToEnd, golden, record
from schemas import validate

SOURCE = b"a //-V5 //-V501\n"
MARKERS = {1: [(5, 2, 7), (501, 8, 15)]}
REPORT = golden("warnings_report.json")
EMPTY = b'{\n  "version": 3,\n  "warnings": []\n}\n'


class Report(EndToEnd):
    def test_whole_report_to_the_byte_over_an_older_one(self):
        self.source("d/a.cpp", SOURCE)
        raw = self.raw_report("raw", record(self.root / "d/a.cpp", SOURCE, MARKERS))
        out = self.scratch / "out"
        for command in "report", "cleanup":
            out.write_bytes(b"older" * 10000)
            self.expect([command, "-r", "root", "-o", "out", raw])
            self.assertEqual(out.read_bytes(), REPORT)
            validate(out, "warnings-report")
            self.assertEqual(len(self.tree()), 1 if command == "report" else 2)
        self.assertEqual(self.tree(), {"d/a.cpp": b"a  \n", "d/a.cpp" + BACKUP: SOURCE})
        self.expect(["report", "-o", "out", self.structured_report("none")])
        self.assertEqual(out.read_bytes(), EMPTY)

    def test_a_path_that_is_not_utf8_is_in_no_report(self):
        self.source("\udcff", SOURCE)
        (self.root / "link").symlink_to("\udcff")
        raw = self.raw_report("raw", record("root/link", SOURCE, MARKERS))
        for command in "merge", "report", "cleanup":
            (self.scratch / "out").write_bytes(b"older")
            self.expect([command, "-r", "root", "-o", "out", raw], 1, b"",
                        b"[json.exception.type_error.316] invalid UTF-8 byte at index 4: 0xFF")
            self.assertNotIn(b"older", (self.scratch / "out").read_bytes())
        self.assertEqual(self.tree()["\udcff"], SOURCE)

    def test_an_output_that_cannot_be_opened_leaves_the_sources(self):
        self.source("a", SOURCE)
        raw = self.raw_report("raw", record("root/a", SOURCE, MARKERS))
        for command in "report", "cleanup":
            for output in "missing/out", "root":
                self.expect([command, "-r", "root", "-o", output, raw], 1, b"",
                            b"Can't write to file: " + output.encode())
        self.assertEqual(self.tree(), {"a": SOURCE})



if __name__ == "__main__":
    unittest.main()
