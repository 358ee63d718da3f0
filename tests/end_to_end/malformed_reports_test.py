"""Reports that are cut, wrong or hostile: what is made of each, and the message that it gets."""

import copy
import json
import os
import resource
import unittest

from harness import EndToEnd, record

RECORD = {"version": 1, **record("|?|/a", b"", {1: [(501, 2, 9)]})}
REPORT = {"files": [RECORD], "version": 1}
PLAIN = b'{"path":"root/a","hash":"","lines":[{"line":1,"markers":[]}]}'
TYPES = {"path": str, "hash": str, "files": list, "lines": list, "markers": list,
         "columns": (), "offsets": ()}  # All other keys have numbers, or true or false.
NO_ROOT = b"Please specify the '--sourcetree-root' flag to merge raw reports."
MEBIBYTES = int(os.environ.get("QLN_MALFORMED_MIB", "64"))


def compact(value):
    return json.dumps(value, separators=(",", ":")).encode()


def places(value):
    """Every object in a JSON value, with each of its keys."""
    if isinstance(value, dict):
        yield from ((value, key) for key in value)
    if isinstance(value, (dict, list)):
        for inner in value.values() if isinstance(value, dict) else value:
            yield from places(inner)


class MalformedReports(EndToEnd):
    def setUp(self):
        super().setUp()
        stack = resource.getrlimit(resource.RLIMIT_STACK)
        resource.setrlimit(resource.RLIMIT_STACK, (8 << 20, stack[1]))  # The usual one.
        self.addCleanup(resource.setrlimit, resource.RLIMIT_STACK, stack)
        self.report = self.scratch / "report"
        self.refusal = b"Parsing error for file '%s'." % bytes(self.report)

    def gets(self, result, text=None, root="root"):
        """Expects the files of the merged report, or, if result is bytes, that message alone."""
        if text is not None:
            self.report.write_bytes(text)
        merged = self.scratch / "merged"
        merged.unlink(missing_ok=True)
        ended = self.run_program("merge", "-r", root, "-o", "merged", "report")
        shown = (text or b"")[:400]
        if isinstance(result, bytes):
            self.assertEqual((*ended, merged.exists()), (1, b"", result, False), shown)
        else:
            self.assertEqual(ended, (0, b"", b""), shown)
            self.assertEqual(json.loads(merged.read_bytes())["files"], result, shown)

    def gets_paths(self, paths, text):
        self.gets([{**json.loads(PLAIN), "path": path} for path in paths], text)

    def test_wrong_types_and_missing_keys(self):
        for report in copy.deepcopy((RECORD, REPORT)):
            for parent, key in list(places(report)):
                right = parent[key]
                for wrong in None, True, 1, 1.5, "1", [], {}, [1], {"begin": 1}:
                    if wrong == [1] or not isinstance(wrong, TYPES.get(key, (int, float))):
                        parent[key] = wrong
                        self.gets(self.refusal, compact(report))
                del parent[key]
                if key != "code" and (key != "version" or "files" in parent):  # The required ones.
                    self.gets(self.refusal, compact(report))
                parent[key] = right
        for text in b"null", b"true", b"1", b'"{}"', b"[]", b"{}", b"x", b",", b":":
            self.gets(self.refusal, text)

    def test_what_no_report_has(self):
        structured = b'{"version":1,"files":[%s]}' % PLAIN
        nested = b'[{"lines":' * 100_000 + b"1" + b"}]" * 100_000  # More than a stack bears.
        for text in (b"\xef\xbb\xbf" + structured, structured + b"\0{",  # NUL is an end.
                     structured[:-1] + b',"other":' + nested + b"}",
                     b'{"version":"","files":1,' + structured[1:]):  # The last of a key counts.
            self.gets_paths(["|?|/root/a"], text)
        self.gets_paths(["|?|/a"], PLAIN[:-1] + b',"other":' + nested + b"}")
        self.gets_paths(["|?|/a"], PLAIN + b"\n" + PLAIN.replace(b"/a", b"/b")[:-1])  # Cut short.
        for text in (PLAIN + b"\0", PLAIN.replace(b":1", b":" + nested), PLAIN[:-1] + b',"path":1}',
                     b'{"version":1,"files":[%s\0}]}' % PLAIN.replace(b"root/a", b"{")):
            self.gets(self.refusal, text)

    def test_numbers_at_and_past_every_limit(self):
        exact = (2**31, 2**32 - 1, 2**32, 2**63 - 1, 2**63, 10**19 - 1, 10**19, 2**64 - 1)
        beyond = (2**64, 10**20, -2**63, -2**63 - 1)  # All become 2**63, as processors have it.
        pattern = compact(RECORD).replace(b'"version":1', b'"version":N')
        pattern = pattern.replace(b":501", b":N").replace(b":2,", b":N,").replace(b":9}", b":N}")
        pattern = pattern.replace(b":3,", b":N,").replace(b":10}", b":N}").replace(b":1,", b":N,")
        for text, number in {"-0": 0, "true": 1, "false": 0, "1e2": 100, "1.999": 1, "-1": 2**64 - 1, "-2.9": 2**64 - 2, "1e-999": 0,
                             "1.7e308": 2**63, **{str(number): number for number in exact},
                             **{str(number): 2**63 for number in beyond}}.items():
            span = {"begin": number, "end": number}
            marker = {"columns": span, "offsets": span, **({"code": number} if number else {})}
            self.gets([{"path": RECORD["path"], "hash": RECORD["hash"],
                        "lines": [{"line": number % 2**32, "markers": [marker]}]}],
                      b'{"files":[%s],"version":1}' % pattern.replace(b":N", b":" + text.encode()))
        for text in "1e309 -1e309 00 01 +1 .5 1. 1e 0x1 NaN - -- 1_0".split():
            self.gets(self.refusal, pattern.replace(b":N", b":" + text.encode()))

    def test_a_gigabyte_of_braces(self):
        """In bounded memory. A gigabyte with QLN_MALFORMED_MIB=1024; the whole run takes less."""
        for first, second, result in (("{", "{", []), ("}", "}", []), ("{", "}", self.refusal),
                                      ("}", "{", self.refusal), ("[", "[", self.refusal)):
            with open(self.report, "wb") as report:
                for brace in first, second:
                    for _ in range(MEBIBYTES // 2):
                        report.write(brace.encode() * (1 << 20))
            self.gets(result)
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss >> 10, MEBIBYTES)


if __name__ == "__main__":
    unittest.main()
