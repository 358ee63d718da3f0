"""Reading and merging reports, and the merged report."""

import json
import os
import threading
import unittest

from harness import EndToEnd, golden, record

A1 = {1: [(501, 2, 9)], 3: [(502, 0, 7)]}
A2 = {3: [(502, 0, 7)], 4: [(503, 0, 7)]}
KEPT = {"|?|/a": {3: [502]}}


class Merge(EndToEnd):
    def raw(self, name, **files):
        return self.raw_report(name, *(record(self.root / path, b"", markers)
                                       for path, markers in files.items()))

    def structured(self, name, **files):
        return self.structured_report(name, *(record(f"|?|/{path}", b"", markers)
                                              for path, markers in files.items()))

    def fails(self, message, *reports, root="root"):
        self.expect(["merge", "-r", root, "-o", "out", *reports], 1, b"", message)
        self.assertFalse((self.scratch / "out").exists())

    def test_structured_report_to_the_byte(self):
        content = json.dumps({"files": [{**record("|?|/src/\u00e4 {a}.cpp", b"abc",
                                                  {12: [(None, 0, 1), (501, 345, 352)]}),
                                         "version": 9, "other": None},
                                        record("|?|/src/a.cpp", b"", {})], "version": True})
        (self.scratch / "in").write_text(content)
        self.expect(["merge", "-r", "", "-o", "out", "in"])
        self.assertEqual((self.scratch / "out").read_bytes(), golden("structured_report.json"))
        self.expect(["merge", "-r", "", "-o", "again", "out"])
        self.assertEqual((self.scratch / "again").read_bytes(), (self.scratch / "out").read_bytes())
        self.expect(["merge", "-r", "", "-o", "none", self.structured_report("empty")])
        self.assertEqual((self.scratch / "none").read_bytes(),
                         b'{\n  "files": [],\n  "version": 1\n}')

    def test_how_reports_of_both_kinds_combine(self):
        raw1, raw2 = self.raw("r1", a=A1, b=A1), self.raw("r2", a=A2, c=A1)
        one, two = self.structured("s1", a=A1, b=A1), self.structured("s2", a=A2, c=A1)
        every = {1: [501], 3: [502]}
        for reports, expected in (
                ([raw1, raw2], {**KEPT, "|?|/b": every, "|?|/c": every}),  # Raw reports add files,
                ([one, two], KEPT),                                        # structured ones remove,
                ([raw1, two], KEPT),
                ([one, raw2], {**KEPT, "|?|/b": every, "|?|/c": every}),
                (["/dev/null", one], {}),                    # and only the first of all replaces.
                (["missing", raw1], {"|?|/a": every, "|?|/b": every}),
                ([str(self.root), raw1], {"|?|/a": every, "|?|/b": every}),
                ([one, one, one], {"|?|/a": every, "|?|/b": every}),
                ([], {})):
            self.assertEqual(self.merged(*reports), expected, reports)

    def test_lines_agree_only_as_a_whole(self):
        first, second = (501, 0, 7), (502, 8, 15)
        for markers, agrees in (({5: [first, second]}, True), ({5: [second, first]}, False),
                                ({5: [first]}, False), ({6: [first, second]}, False),
                                ({5: [first, (502, 8, 16)]}, False),
                                ({4: [], 5: [first, second]}, True)):
            reports = [self.raw("r1", a={5: [first, second]}), self.raw("r2", a=markers)]
            self.assertEqual(self.merged(*reports), {"|?|/a": {5: [501, 502]}} if agrees else {})

    def test_an_emptied_file_stays_and_keeps_its_hash_until_all_are_read(self):
        gone = self.raw("r2", a={9: [(1, 0, 4)]})
        self.assertEqual(self.merged(self.raw("r1", a=A1), gone, self.raw("r3", a=A1)), {})
        other = self.raw_report("r4", record(self.root / "a", b"other", A1))
        self.fails(b"Hash mismatch while merging reports for file '%s'."
                   % bytes(self.root / "a"), "r1", gone, other)

    def test_paths_of_raw_reports(self):
        (self.scratch / "link").symlink_to("root")
        os.mkdir(self.root / "d")
        report = self.raw_report("r", *(record(path, b"", A2) for path in (
            "root/d/../relative", self.scratch / "link" / "d" / "linked", "/outside", "root",
            "none/a.cpp", "", f"{self.root}/e/../x/")))
        self.assertEqual(set(self.merged(report)),
                         {"|?|/relative", "|?|/d/linked", "|?|/.", "|?|/../none/a.cpp", "|?|/..",
                          "|?|/x/",
                          "|?|/" + "../" * len(self.root.parts[1:]) + "outside"})

    def test_within_one_report(self):
        twice = [record("|?|/a", b"", A1), record("|?|/a", b"x", A2)]
        self.assertEqual(self.merged(self.structured_report("s", *twice)),
                         {"|?|/a": {1: [501], 3: [502]}})
        for one in twice:
            one["path"] = str(self.root / "a")
        self.fails(b"Hash mismatch while merging reports for file '%s'."
                   % bytes(self.root / "a"), self.raw_report("r", *twice))

    def test_reports_that_are_refused(self):
        good = json.dumps(record("a", b"", A1))
        for text in (good + "\r\n" + good, " " + good, good + "," + good, "[" + good + "]", "{}",
                     '{"files": [], "version": null}', '{"files": {}, "version": 1}',
                     good.replace('"a"', '"{a"') + "}", good.replace('"a"', '"\\ud800"'),
                     good.replace("501", '"501"'), good.replace("501", "1e999")):
            (self.scratch / "report.json").write_text(text)
            self.fails(b"Parsing error for file '%s'." % bytes(self.scratch / "report.json"),
                       "report.json")
        no_root = b"Please specify the '--sourcetree-root' flag to merge raw reports."
        self.fails(no_root, "report.json", root="")
        self.fails(no_root, "missing", root="")

    def test_a_structured_report_through_a_pipe(self):
        os.mkfifo(self.scratch / "pipe")
        report = self.scratch / self.structured("s", a=A1)
        writer = threading.Thread(target=lambda: (self.scratch / "pipe").write_bytes(
            report.read_bytes()))
        writer.start()
        self.assertEqual(self.merged("pipe"), {"|?|/a": {1: [501], 3: [502]}})
        writer.join()

    def test_an_unfinished_record_is_dropped(self):
        text = json.dumps(record(self.root / "a", b"", A2))
        (self.scratch / "r").write_text(text + "\n" + text[:-1])
        self.assertEqual(self.merged("r"), {"|?|/a": {3: [502], 4: [503]}})

    def test_an_output_that_cannot_be_written_is_not_reported(self):
        self.expect(["merge", "-r", "root", "-o", "missing/out", self.structured("s", a=A1)])

    def test_a_name_that_is_not_utf8_cannot_be_written(self):
        self.source("\udcff", b"")
        (self.root / "link").symlink_to("\udcff")
        report = self.raw("r", link=A1)
        (self.scratch / "out").write_bytes(b"older")
        self.expect(["merge", "-r", "root", "-o", "out", report], 1, b"",
                    b"[json.exception.type_error.316] invalid UTF-8 byte at index 4: 0xFF")
        self.assertEqual((self.scratch / "out").read_bytes(), b"")


if __name__ == "__main__":
    unittest.main()
