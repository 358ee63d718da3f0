"""qln-fp-tree: check, preview, undo, keep, sarif, and the recipe of its manual page."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import unittest

import jsonschema

from harness import BACKUP, PROGRAM, EndToEnd, golden, record

TOOL = pathlib.Path(__file__).parents[2] / "companion" / "qln-fp-tree"
MANUAL = TOOL.parents[1] / "man" / "qln-fp-tree.1"
# Content, markers to remove, and what is left, by name.
SOURCES = {
    "a b.cpp": (b"x  //-V501\ny //-V7\n", {1: [(501, 3, 10)]}, b"x  \ny //-V7\n"),
    "d e/q'\"$(f)\\n*.cpp": (b"//-V5//-V501 //-V5\r\n\0z //-V6", {
        1: [(5, 0, 5), (5, 13, 18)], 2: [(6, 3, 8)]}, b"//-V501 \r\n\0z "),
    "last": (b"x\n//-V5", {2: [(5, 0, 5)]}, b"x\n"),
    "only": (b"//-V5", {1: [(5, 0, 5)]}, b""),
}
BEFORE = {name: content for name, (content, _, _) in SOURCES.items()}
CLEANED = {name: cleaned for name, (_, _, cleaned) in SOURCES.items()}
PATCH = b"""--- a/a b.cpp\t
+++ b/a b.cpp\t
@@ -1,2 +1,2 @@
-x  //-V501
+x  \n y //-V7
"""


class Companion(EndToEnd):
    def setUp(self):
        super().setUp()
        for name, content in BEFORE.items():
            self.source(name, content)
        self.raw = "./" + self.raw_report("-raw one", *(
            record("root/" + name, content, markers)
            for name, (content, markers, _) in SOURCES.items()))
        self.expect(["merge", "-r", "root", "-o", "merged", self.raw])

    def run_tool(self, *arguments):
        """As run_program; sees to it that nothing stays in the temporary directory."""
        here = list(self.temp.iterdir())
        done = subprocess.run([TOOL, *arguments], capture_output=True, cwd=self.scratch,
                              env={**os.environ, "TMPDIR": str(self.temp)}, timeout=300)
        self.assertEqual(list(self.temp.iterdir()), here)
        return done.returncode, done.stdout, done.stderr

    def expect_tool(self, arguments, status=0, out="", complaints=()):
        """Complaints may come in any order."""
        got = self.run_tool(*arguments)
        self.assertEqual(got[:2], (status, out.encode()), got)
        # What jq itself says differs from one version of it to the next.
        said, wanted = (sorted(re.sub("(jq: )?(parse )?error.*", "an error of jq's", line)
                               for line in lines) for lines in (
            got[2].decode().splitlines(), ["qln-fp-tree: " + line for line in complaints]))
        self.assertEqual(said, wanted)

    def test_command_line(self):
        version = self.run_program("--version")[1].decode()
        self.expect_tool(["--version"], out=version.replace("cleaner", "tree"))
        self.assertEqual(self.run_tool("keep", "-h"), (0, self.run_tool("--help")[1], b""))
        wrong = "no such command, or not with these arguments: "
        for line, why in (("", "no command"), ("-x", "unknown option -x"), ("x", wrong + "x"),
                          ("undo", "undo needs -r ROOT"), ("keep -r", "-r needs a directory"),
                          ("check", wrong + "check"), ("sarif a b", wrong + "sarif a b")):
            self.expect_tool(line.split(), 2, "", [why + "; see qln-fp-tree --help"])
        self.expect_tool(["keep", "-r", "none"], 1, "", ["no such directory: none"])
        # Without a name for the program it is the one beside.
        beside = shutil.copy(TOOL, self.scratch)
        (self.scratch / "qln-fp-cleaner").symlink_to(PROGRAM)
        environment = {**os.environ, "QLN_FP_CLEANER": ""}
        self.assertEqual(subprocess.check_output([beside, "-v"], env=environment),
                         self.run_tool("-v")[1])

    def test_check(self):
        self.expect_tool(["check", "-r", "root/", self.raw, "merged"], out="all is well\n")
        for name, text in ("blank", "\n \n"), ("none", "{]}\n"), ("cut", '{"path": 1'):
            (self.scratch / name).write_text(text)
        records = [record("root/" + name, b"", {}) for name in ("a b.cpp", "no", "x\ny", "d e")]
        records[3]["hash"] = "BAD"
        self.raw_report("wrong", *records)
        (self.root / "a b.cpp").write_bytes(b"")
        self.expect_tool(["check", "-r", "root", "merged", "wrong", "gone", "root", "blank", "none",
                          "cut"], 1, "", [
            "not the source that was analyzed: root/a b.cpp", "no such source: ./root/no",
            "no such source: ./root/d e", "report cut short, or not to be checked: wrong",
            'jq: error (at wrong:3): control character in "root/x\\ny"', "no such report: gone",
            "no such report: root", "empty report: blank",
            f"Parsing error for file '{self.scratch}/none'.",
            "report cut short, or not to be checked: cut",
            "parse error: Unfinished JSON term at EOF at line 1, column 10"])

    def test_preview(self):
        for report in self.raw, "merged":
            status, patch, errors = self.run_tool("preview", report, "--sourcetree-root=root/")
            self.assertEqual((status, errors, patch[:len(PATCH)]), (0, b"", PATCH))
            self.assertEqual(self.tree(), BEFORE)
        subprocess.run(["patch", "-s", "-p1", "-d", self.root], input=patch, check=True)
        self.assertEqual(self.tree(), CLEANED)

    def test_preview_refuses(self):
        outside = self.source("../out/x", b"//-V5\n")
        markers = {1: [(5, 0, 5)]}
        self.raw_report("odd", record("out/x", b"//-V5\n", markers), *(
            record("root/" + name, b"", markers) for name in ("a b.cpp", "no", "x\ny")))
        refused = "outside the root, or with control characters: "
        self.expect_tool(["preview", "-r", "./root/", "odd"], 1, "", [
            refused + '"|?|/../out/x"', refused + '"|?|/x\\ny"',
            *(f"Hash mismatch for file './root/{name}'." for name in ("a b.cpp", "no"))])
        self.assertEqual((self.tree(), outside.read_bytes()), (BEFORE, b"//-V5\n"))

    def test_undo_and_keep(self):
        owner = 12345 if os.geteuid() == 0 else os.geteuid()  # Only root may give files away.
        for command, said, left in ("undo", "put back", BEFORE), ("keep", "kept", CLEANED):
            self.expect(["cleanup", "-r", "root", "merged"])
            for name in SOURCES:
                os.chown(self.root / (name + BACKUP), owner, -1)
                (self.root / (name + BACKUP)).chmod(0o4751)
            self.expect_tool([command, "-r", "root"],
                             out="".join(f"{said}: root/{name}\n" for name in SOURCES))
            self.assertEqual(self.tree(), left)
            for name in SOURCES:
                status = (self.root / name).stat()
                self.assertEqual((status.st_mode & 0o7777, status.st_uid), (0o4751, owner))
            self.expect_tool([command, "-r", "root"])

    def test_undo_and_keep_refuse(self):
        elsewhere = self.source("../out/x" + BACKUP, b"").with_name("x")
        elsewhere.write_bytes(b"")
        (self.root / "link").symlink_to(elsewhere.parent)
        (self.root / ("s" + BACKUP)).symlink_to("a b.cpp")
        (self.root / ("d" + BACKUP)).mkdir()
        self.source("gone" + BACKUP, b"")
        complaints = ["source of the backup is gone, or no regular file: root/gone",
                      *(f"backup is no regular file: root/{name}{BACKUP}" for name in "ds")]
        for number, changed in enumerate((
                b"", b"a  b //-V6\n", b"a  b \nc", b"a  b //-V6\nc //-V7", b"a  b \nc \n//-V8\n",
                b"a //-V6 b //-V6\nc //-V7\n", b"A  b \nc \n", b"a  b \nc //-V77\n",
                b"a  b \nc //-V7\n\n", b"a  b \nc //-V7 //-V7\n", b"a b \nc \n")):
            self.source(f"changed{number}" + BACKUP, b"a //-V5 b //-V6\nc //-V7\n")
            self.source(f"changed{number}", changed)
            complaints.append(f"source has changed since the cleanup: root/changed{number}")
        before = self.tree()
        for command in "undo", "keep":
            self.expect_tool([command, "-r", "root"], 1, "", complaints)
            self.assertEqual(self.tree(), before)

    def test_sarif(self):
        markers = {3: [(5, 0, 5), (501, 6, 13)], 0: [(5, 0, 5)]}
        self.structured_report("in", record("|?|/d e/\u00e4%:.cpp", b"", markers))
        self.expect(["report", "-o", "out", "in"])
        status, log, errors = self.run_tool("sarif", "out")
        self.assertEqual((status, errors), (0, b""))
        log = json.loads(log)
        jsonschema.Draft202012Validator(json.loads(golden("sarif-schema-2.1.0.json"))).validate(log)
        rules = [rule["id"] for rule in log["runs"][0]["tool"]["driver"]["rules"]]
        self.assertEqual(rules, ["V005", "V501"])
        line3, uri = {"startLine": 3, "endLine": 3}, "d%20e/%C3%A4%25%3A.cpp"
        found = [(one["ruleId"], one["ruleIndex"], place.get("region"),
                  place["artifactLocation"]["uri"]) for one in log["runs"][0]["results"]
                 for place in [one["locations"][0]["physicalLocation"]]]
        self.assertEqual(found, [("V005", 0, line3, uri), ("V501", 1, line3, uri),
                                 ("V005", 0, None, uri)])
        (self.scratch / "two").write_bytes((self.scratch / "out").read_bytes() * 2)
        for name in "in", "two", "gone":
            self.expect_tool(["sarif", name], 1, "", ["no such warnings report: " + name])

    def test_the_recipe_for_some_codes(self):
        blocks = re.findall(r"^\.nf\n\.RS\n(.*?)^\.RE", MANUAL.read_text(), re.M | re.S)
        recipe, = (block for block in blocks if "jq" in block)
        content = b"//-V501 //-V502\n//-V6\n//-V600 //-V\n//-V699 //-V700\n"
        records = [record("a.cpp", content, {
            1: [(501, 0, 7), (502, 8, 15)], 2: [(6, 0, 5)], 3: [(600, 0, 7), (None, 8, 12)],
            4: [(699, 0, 7), (700, 8, 15)]}), record("b.cpp", b"//-V7\n", {1: [(7, 0, 5)]})]
        self.source("a.cpp", content)
        for name in "linux.json", "windows.json":
            self.raw_report("root/" + name, *records)
        path = os.path.dirname(PROGRAM) + os.pathsep + os.environ["PATH"]
        subprocess.run(["sh", "-e", "-c", recipe.replace(r"\(aq", "'").replace(r"\-", "-")],
                       cwd=self.root, env={**os.environ, "PATH": path, "TMPDIR": str(self.temp)},
                       check=True)
        self.assertEqual(self.tree()["a.cpp"], b" //-V502\n//-V6\n //-V\n //-V700\n")
        selected = json.loads(self.tree()["selected.json"])["files"]
        self.assertEqual([[one["line"] for one in file["lines"]] for file in selected], [[1, 3, 4]])


if __name__ == "__main__":
    unittest.main()
