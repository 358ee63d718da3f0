"""What qln-fp-tree makes of reports: of another machine's, of odd ones, and for other programs."""

import json
import os
import pathlib
import random
import subprocess
import unittest

from harness import BACKUP, PROGRAM, EndToEnd, record

TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
MARKER = b"//-V501"
WINDOWS = "C:\\work\\tank"


class CompanionReports(EndToEnd):
    def expect_tool(self, line, status=0, out=b"", complaints=(), **options):
        done = subprocess.run([TOOL, *line.split(" ")], capture_output=True, cwd=self.scratch,
                              env={**os.environ, "TMPDIR": str(self.temp)}, timeout=300, **options)
        self.assertEqual((done.returncode, done.stderr.decode().splitlines()), (
            status, ["qln-fp-tree: " + text for text in complaints]), done)
        if out is not None:
            self.assertEqual(done.stdout, out)
        return done.stdout

    def relocated(self, status, *complaints, start=WINDOWS, reports="windows"):
        (self.scratch / "out").unlink(missing_ok=True)
        self.expect_tool(f"relocate -r root --from {start} -o out {reports}", status, b"", complaints)
        return (self.scratch / "out").read_text() if status == 0 else None

    def test_a_tree_of_another_machine(self):
        """Rewritten to Windows paths, and with CR LF, reports give the cleanup of the original ones."""
        chance = random.Random(3)
        reports = {name: [] for name in ("one", "two", "windows1", "windows2")}
        for number in range(300):
            lines = [b"x%d;%s" % (line, b"  " + MARKER if chance.random() < 0.3 else b"")
                     for line in range(chance.randrange(30))]
            unix, windows = (end.join(lines) for end in (b"\n", b"\r\n"))
            path = f"src{number % 7}/Sub{number % 3}/h{number}.h"
            self.source(path, chance.choice([unix, windows]))
            there = path.swapcase() if chance.random() < 0.2 else path
            for half in "one", "two":
                markers = {at: [(501, line.index(MARKER), len(line))] for at, line in enumerate(lines, 1)
                           if MARKER in line and chance.random() < 0.9}
                reports[half].append(record(f"root/{path}", (self.root / path).read_bytes(), markers))
                reports[chance.choice(["windows1", "windows2"])].append(record(
                    "c:\\Work\\Tank\\" + there.replace("/", "\\\\"), chance.choice([unix, windows]), markers))
        for name, records in reports.items():
            self.raw_report(name, *records)
        wanted = self.merged("one", "two")
        self.relocated(0, reports="windows1 windows2")
        self.assertEqual(self.merged("out"), wanted)
        self.assertEqual({json.loads(line)["path"] for line in (self.scratch / "out").read_text().splitlines()},
                         {f"{self.scratch}/{one['path']}" for one in reports["one"]})
        self.expect_tool("clean -r root out", out=None)
        for one in self.root.rglob("*" + BACKUP):
            goes = wanted["|?|/" + str(one.relative_to(self.root)).removesuffix(BACKUP)]
            lines = one.read_bytes().split(b"\n")
            for at in goes:
                lines[at - 1] = lines[at - 1].replace(MARKER, b"")
            self.assertEqual(one.with_name(one.name.removesuffix(BACKUP)).read_bytes(), b"\n".join(lines))

    def test_relocate_refuses(self):
        markers = {2: [(501, 0, 7)]}
        for name in "a.h", "b.h", "B.H", "{c}.h":
            self.source(name, b"x\n" + MARKER)
        def report(path, content=b"x\r\n" + MARKER):
            return self.raw_report("windows", record(path, content, markers), record(
                f"{WINDOWS}\\A.H", b"x\n" + MARKER, {}))
        for path, content, why in (
                ("D:\\x\\a.h", b"", "source outside of --from: D:\\x\\a.h"),
                (f"{WINDOWS}\\..\\a.h", b"", f"source outside of --from: {WINDOWS}\\..\\a.h"),
                (f"{WINDOWS}\\d.h", b"", "no such source: root/d.h"),
                (f"{WINDOWS}\\a.h\0", b"", "no such source: root/a.h\\x00"),
                (f"{WINDOWS}/B.h", b"x\n" + MARKER, "several sources have that name in another case: root/B.h"),
                (f"{WINDOWS}/b.h", b"x\r" + MARKER, "not the source that was analyzed: root/b.h")):
            report(path, content)
            self.relocated(1, why, "nothing was written")
        self.source("b.h", b"\n\r\n" + MARKER)  # Of three lines with CR LF, and of two as it is.
        report(f"{WINDOWS}/b.h", b"\r\n\r\n" + MARKER)
        self.relocated(0)
        self.source("b.h", b"\r\n\r" + MARKER)
        self.relocated(1, "not the source that was analyzed: root/b.h", "nothing was written")
        text = self.relocated(0, reports=report(f"{WINDOWS}\\.\\x\\..\\{{c}}.H"))
        self.assertEqual((text.count("{"), text.count("}"), '"lines":[]' in text), (6, 6, True))
        self.assertEqual(self.expect_tool("relocate -r root --from c:\\WORK/tank/ -o - windows", out=None),
                         text.encode())
        self.relocated(1, f"no path of the reports is below D:\\; they begin with {WINDOWS}",
                       "nothing was written", start="D:\\")
        self.structured_report("windows")
        self.relocated(1, "structured report, which names no machine's paths: windows")

    def test_check_tells_of_another_machine(self):
        self.source("a", b"")
        here = record("root/a", b"", {})
        for paths, text in ((["C:\\work\\tank\\x\\a", "c:\\work/Tank/b"], "2 of 3 sources are not there; "
                             "their paths begin with C:\\work\\tank"), (["/n/t/x/a"] * 2, "1 of 2 sources are "
                             "not there; their paths begin with /n/t/x"), (["root/x", "y"], "")):
            self.raw_report("foreign", here, *(record(path, b"", {}) for path in paths))
            errors = subprocess.run([TOOL, "check", "-r", "root", "foreign"], cwd=self.scratch,
                                    capture_output=True, text=True).stderr.splitlines()
            self.assertEqual([line for line in errors if "begin" in line], [
                f"qln-fp-tree: {text}: see qln-fp-tree relocate"] if text else [])

    def test_what_is_no_report(self):
        good = json.dumps(record("root/a", b"x\n" + MARKER, {2: [(501, 0, 7)]})).encode()
        self.source("a", b"x\n" + MARKER)
        mark = b"\xef\xbb\xbf"
        for content, why in (
                (b'{"version": 3, "warnings": [{', "but a warnings report"),
                (b'{"$schema": "x/sarif-2.1.0.json", "runs": []}', "but SARIF"), (b"\x1f\x8b\x08", "but a gzip file"),
                (mark + b"\n<!DOCTYPE html>", "but a web page"), ("{".encode("utf-16"), "but text in UTF-16"),
                (good + b"\n\n" + good[:18] + b"!" + good[18:], f"from byte {len(good) + 21}, line 3 on"),
                (good + b"\r\n" + good, f"from byte {len(good) + 1}, line 1 on"),
                (mark + b"\n" + good + b"\n{}", f"from byte {len(good) + 6}, line 3 on")):
            (self.scratch / "in").write_bytes(content)
            for command in "check", "clean":
                done = subprocess.run([TOOL, command, "-r", "root", "in"], cwd=self.scratch,
                                      capture_output=True, text=True)
                self.assertIn(f"qln-fp-tree: no marker report {why}: in\n", done.stderr)
        (self.scratch / "in").write_bytes(mark + good)
        for name in "in", "/dev/stdin":
            self.expect_tool(f"list -r root {name}", input=mark + good, out=(
                b"root/a:2:1: warning: redundant marker //-V501 [V501]\n"))

    def test_list_and_sarif(self):
        text = b"\xef\xbb\xbf\xc3\xa4\xff\xf0\x9f\x98\x80 //-V501 //-V7\nx //-V5 y\n//-V6"
        markers = {1: [(501, 11, 18), (7, 19, 24)], 2: [(5, 2, 7)], 3: [(None, 0, 5)]}
        self.source("a b", text)
        self.source("old", b"")
        self.raw_report("one", record("root/a b", text, markers), record("root/old", b"x", markers))
        self.raw_report("two", record("root/a b", text, {**markers, 3: []}))
        changed = "not the source that was analyzed: root/old"
        unsafe = b", but not safe to take out: text behind the marker would become code"
        line = b"root/a b:%d:%d: warning: redundant marker%s%s%s\n"
        agreed = b"".join(line % values for values in ((1, 12, b" //-V501", b"", b" [V501]"), (
            1, 20, b" //-V7", b"", b" [V007]"), (2, 3, b" //-V5", unsafe, b" [V005]")))
        self.expect_tool("list -r root one", 1, agreed + line % (3, 1, b"", b"", b""), [changed])
        self.expect_tool("list -r root one two", 1, agreed, [changed])
        self.expect_tool("list --stays -r root one two", 1, (
            b"root/a b:3:1: note: marker stays: two lists other markers there: \n"), [changed])
        log = json.loads(self.expect_tool("sarif -r root --prefix ./p/ one", 1, None, [changed]))
        run, = log["runs"]
        places = [(one["locations"][0]["physicalLocation"], one.get("fixes")) for one in run["results"]]
        self.assertEqual({place["artifactLocation"]["uri"] for place, _ in places}, {"p/a%20b"})
        characters = text[3:].decode("utf-8", "surrogateescape").encode("utf-16-le", "surrogatepass")
        for place, fixes in places:
            region = place["region"]
            at, size = region["charOffset"] * 2, region["charLength"] * 2
            self.assertRegex(characters[at:at + size].decode("utf-16-le"), r"^//-V\d+$")
            begin = characters[:at].decode("utf-16-le", "surrogatepass").rpartition("\n")[2]
            column = len(begin.encode("utf-16-le", "surrogatepass")) // 2 + 1
            self.assertEqual((region["startColumn"], region["endColumn"] - column), (column, size // 2))
            if fixes:
                replaced, = fixes[0]["artifactChanges"][0]["replacements"]
                self.assertEqual(replaced, {"deletedRegion": region, "insertedContent": {"text": ""}})
        self.assertEqual([(place["region"]["startLine"], bool(fixes)) for place, fixes in places], [
            (1, True), (1, True), (2, False)])
        self.assertEqual([one["ruleId"] for one in run["results"]], ["V501", "V007", "V005"])


if __name__ == "__main__":
    unittest.main()
