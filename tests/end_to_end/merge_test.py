"""Reading and merging reports, and the merged report."""

import json
import os
import threading
import unittest

from harness import EndToEnd, record

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
                ([raw1, self.raw("r3", a={9: [(1, 0, 4)]}), raw1], {"|?|/b": every}),
                ([], {})):
            self.assertEqual(self.merged(*reports), expected, reports)

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
            report.read_bytes().replace(b": 7,", b": true,")))  # Unusual, so read by the library.
        writer.start()
        self.assertEqual(self.merged("pipe"), {"|?|/a": {1: [501], 3: [502]}})
        writer.join()

    def test_a_raw_report_through_a_pipe_is_read_past_before_it_is_known_to_be_raw(self):
        report = (self.scratch / self.raw_report("r", record("root/a", b"", A1))).read_bytes()
        self.assertEqual(self.run_program("merge", "-r", "root", "-o", "out", "/dev/stdin", input=report),
                         (0, b"", b""))
        self.assertEqual(json.loads((self.scratch / "out").read_bytes())["files"], [])

    def test_paths_of_raw_reports(self):
        (self.scratch / "link").symlink_to("root")
        report = self.raw_report("r", *(record(path, b"", A2) for path in (
            self.scratch / "link" / "d" / "linked", "/outside", "root", "none/a.cpp", "")))
        self.assertEqual(set(self.merged(report)),
                         {"|?|/d/linked", "|?|/.", "|?|/../none/a.cpp", "|?|/..",
                          "|?|/" + "../" * len(self.root.parts[1:]) + "outside"})

    def test_an_output_that_cannot_be_written_is_not_reported(self):
        self.expect(["merge", "-r", "root", "-o", "missing/out", self.structured("s", a=A1)])



if __name__ == "__main__":
    unittest.main()
