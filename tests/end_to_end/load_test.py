"""Large inputs in a narrow process."""

import json
import os
import resource
import unittest

from harness import EndToEnd, record

LIMITS = {resource.RLIMIT_NOFILE: 64}
if "QLN_WIDE_ADDRESSES" not in os.environ:
    LIMITS[resource.RLIMIT_AS] = 96 << 20


def narrow():
    for kind, most in LIMITS.items():
        resource.setrlimit(kind, (most, most))


class Load(EndToEnd):
    def test_memory_does_not_grow_with_what_is_read(self):
        lines = {number: [(501, 7, 14)] for number in range(1, 400)}
        kept = record(self.root / "a", b"", lines)
        other = record(self.root / "a", b"", {**lines, 400: [(502, 7, 14)]})
        text = (json.dumps(other) + "\n" + json.dumps(kept) + "\n").encode()
        with open(self.scratch / "raw", "wb") as stream:
            for _ in range((192 << 20) // len(text)):
                stream.write(text)
        for command in "merge", "report":
            self.assertEqual(self.run_program(command, "-r", "root", "-o", command, "raw",
                                              preexec_fn=narrow), (0, b"", b""))
        merged = json.loads((self.scratch / "merge").read_bytes())["files"]
        self.assertEqual([file["lines"] for file in merged], [kept["lines"]])
        warnings = json.loads((self.scratch / "report").read_bytes())["warnings"]
        self.assertEqual([warning["positions"][0]["line"] for warning in warnings], list(lines))

    def test_deep_paths(self):
        deep = [self.root / str(number) / ("a/" * 1900) for number in range(40)]
        report = self.raw_report("raw", *(record(path, b"", {1: []}) for path in deep))
        self.assertEqual(self.run_program("merge", "-r", "root", "-o", "merged", report,
                                          preexec_fn=narrow), (0, b"", b""))
        merged = json.loads((self.scratch / "merged").read_bytes())["files"]
        self.assertEqual({file["path"] for file in merged},
                         {f"|?|/{path.relative_to(self.root)}" for path in deep})

    def test_lines_chosen_for_equal_hashes(self):
        """In any order, and the same by every sum that weighs each number by a power of 31."""
        lines = {100_000 - number: [(31 * number, 7, 14)]
                 for number in (7919 * place % 100_000 for place in range(100_000))}
        reports = [self.raw_report(name, record(self.root / "a", b"", one))
                   for name, one in (("raw", lines), ("other", {**lines, 8: []}))]
        self.assertEqual(self.run_program("merge", "-r", "root", "-o", "merged", *reports,
                                          preexec_fn=narrow), (0, b"", b""))
        [merged] = json.loads((self.scratch / "merged").read_bytes())["files"]
        self.assertEqual([line["line"] for line in merged["lines"]],
                         [line for line in lines if line != 8])


if __name__ == "__main__":
    unittest.main()
