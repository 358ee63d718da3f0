"""The warnings report, from the report command and from a cleanup."""

import unittest

import jsonschema

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

    def test_codes_and_messages(self):
        codes = [0, None, 7, 42, 501, 1234, 4294967295, 4294967296, 4294967301]
        markers = {1: [(code, 0, 1) for code in codes]}
        self.expect(["report", "-o", "out",
                     self.structured_report("in", record("|?|/a", b"", markers))])
        warnings = validate(self.scratch / "out", "warnings-report")["warnings"]
        named = [(one["code"], one["message"].split("'")[1][4:]) for one in warnings]
        # Numbers that are 0, as they are or in 32 bits, have no code and no warning.
        self.assertEqual(named, [("V007", "7"), ("V042", "42"), ("V501", "501"),
                                 ("V1234", "1234"), ("V4294967295", "4294967295"),
                                 ("V005", "4294967301")])

    def test_paths(self):
        for path, shown in (("/abs/a", "|?|/abs/a"), ("\u00e4 \"b\"\\", "|?|/\u00e4 \"b\"\\")):
            self.expect(["report", "-o", "out",
                         self.structured_report("in", record(path, b"", MARKERS))])
            warnings = validate(self.scratch / "out", "warnings-report")["warnings"]
            self.assertEqual({one["positions"][0]["file"] for one in warnings}, {shown})
        self.source("\udcff", b"")
        (self.root / "link").symlink_to("\udcff")
        self.expect(["report", "-r", "root", "-o", "out",
                     self.raw_report("raw", record("root/link", b"", MARKERS))], 1, b"",
                    b"[json.exception.type_error.316] invalid UTF-8 byte at index 4: 0xFF")

    def test_an_output_that_cannot_be_opened_leaves_the_sources(self):
        self.source("a", SOURCE)
        raw = self.raw_report("raw", record("root/a", SOURCE, MARKERS))
        for command in "report", "cleanup":
            for output in "missing/out", "root":
                self.expect([command, "-r", "root", "-o", output, raw], 1, b"",
                            b"Can't write to file: " + output.encode())
        self.assertEqual(self.tree(), {"a": SOURCE})

    def test_the_schema_refuses_what_is_no_report(self):
        for text in b"[]", EMPTY.replace(b"3", b"2"), REPORT.replace(b'"cwe": 0,', b""):
            (self.scratch / "bad").write_bytes(text)
            with self.assertRaises(jsonschema.ValidationError):
                validate(self.scratch / "bad", "warnings-report")


if __name__ == "__main__":
    unittest.main()
