"""qln-fp-tree where a source, its folder, its name or the temporary directory is not as usual."""

import json
import os
import pathlib
import subprocess
import unittest

from harness import PROGRAM, UNPRIVILEGED, EndToEnd, record

TOOL = str(pathlib.Path(PROGRAM).with_name("qln-fp-tree"))
TEXT, MARKERS = b"x  //-V5\n", {1: [(5, 3, 8)]}
# Another account, which may not write where coverage is counted.
OTHER = ["env", "LLVM_PROFILE_FILE=/dev/null", "setpriv", "--reuid=4321", "--clear-groups",
         *UNPRIVILEGED[1:]]
CAN_MOUNT = not subprocess.run(["unshare", "-rm", "true"], capture_output=True).returncode


class SpecialPlaces(EndToEnd):
    def report_on(self, *names):
        return self.structured_report("report", *(
            record("|?|/" + str(self.source(name, TEXT).relative_to(self.root)), TEXT, MARKERS)
            for name in names))

    def run_tool(self, *command, around=()):
        """Status, output and complaints."""
        done = subprocess.run([*around, TOOL, *command], cwd=self.scratch, capture_output=True, text=True,
                              env={**os.environ, "TMPDIR": str(self.temp)})
        return done.returncode, done.stdout, done.stderr.replace("qln-fp-tree: ", "").splitlines()

    def expect_refusal(self, complaint, report, around=()):
        """Of check, and of clean, which touches nothing."""
        before = self.tree()
        for command, more in ("check", []), ("clean", ["nothing was cleaned; --skip cleans all else"]):
            status, _, complaints = self.run_tool(command, "-r", "root", report, around=around)
            self.assertEqual((status, complaints), (1, [complaint, *more]))
        self.assertEqual(self.tree(), before)

    @unittest.skipUnless(CAN_MOUNT, "file systems cannot be mounted here")
    def test_a_source_that_is_mounted_by_itself(self):
        self.expect_refusal("source that is mounted by itself: root/x", self.report_on("x"), [
            "unshare", "-rm", "sh", "-c", 'mount --bind root/x root/x && exec "$@"', "sh"])

    @unittest.skipUnless(os.geteuid() == 0, "only root can make what is refused here")
    def test_sources_that_cannot_be_renamed(self):
        report = self.report_on("own/x")
        if subprocess.run(["chattr", "+i", self.root / "own/x"], capture_output=True).returncode == 0:
            self.addCleanup(subprocess.run, ["chattr", "-i", self.root / "own/x"], check=False)
            self.expect_refusal("source that is immutable, or may only grow: root/own/x", report)
            subprocess.run(["chattr", "-i", self.root / "own/x"], check=True)
        (self.root / "own").chmod(0o1777)
        for path in (self.scratch, self.temp):
            path.chmod(0o777)
        self.expect_refusal("source of another owner, in a sticky folder: root/own/x", report, OTHER)

    @unittest.skipUnless(os.geteuid() == 0, "only root can be two accounts")
    def test_a_temporary_directory_of_another_account(self):
        (self.temp / "qln_fp_cleaner").mkdir(mode=0o755)
        for path in (self.scratch, self.temp, self.root):
            path.chmod(0o777)
        status, _, complaints = self.run_tool(
            "check", "-r", "root", self.report_on("x"), around=OTHER)
        self.assertEqual((status, len(complaints)), (1, 1))
        self.assertRegex(complaints[0], r"qln_fp_cleaner.*; give the run one of its own: TMPDIR=\$\(mktemp -d\)$")

    @unittest.skipIf("QLN_WIDE_ADDRESSES" in os.environ, "sanitizers do not work under strace")
    def test_a_copy_that_stays_is_told(self):
        status, out, complaints = self.run_tool(
            "clean", "-r", "root", self.report_on("x"),
            around=["strace", "-f", "-qq", "-o", "calls", "-e", "inject=unlink:error=EIO"])
        copy = self.temp / "qln_fp_cleaner" / "x"
        self.assertEqual((status, out.splitlines()[0], complaints), (
            1, "1 file cleaned, 1 marker removed, 0 files refused",
            [f"a copy of a source stays: {copy}: Input/output error"]))
        self.assertEqual((copy.read_bytes(), (self.root / "x").read_bytes()), (b"x  \n", b"x  \n"))

    def test_names_that_a_patch_cannot_tell(self):
        status, patch, complaints = self.run_tool("preview", "-r", "root", self.report_on("x ", "y/x"))
        self.assertEqual((status, patch.splitlines()[0], complaints), (
            1, "--- a/y/x", ['ends with a blank, and patch would change another file: "x "']))

    def test_hidden_characters_are_shown(self):
        hidden = "\u061c\u200b\u200f\u2028\u202e\u2060\u2069\ufeff"
        shown = "".join(f"\\u{ord(one):04x}" for one in hidden)
        self.source("x", f"x{hidden}\u00e9 //-V5\n".encode())
        report = self.structured_report("report", record("|?|/x", (self.root / "x").read_bytes(), {}))
        out = self.run_tool("explain", "-r", "root", "x:1", report)[1]
        self.assertIn(f"    | x{shown}\u00e9 //-V5\n", out)
        self.assertIn(f"no such source: root/{shown}", self.run_tool(
            "check", "-r", "root", self.structured_report("report", record("|?|/" + hidden, b"", MARKERS)))[2])

    def test_sarif_names_no_host_and_no_region_that_ends_before_it_begins(self):
        places = [{"file": name, "line": 7, "endLine": 3, "navigation": {}}
                  for name in ("//host/share/x.cpp", "|?|//host/y.cpp")]
        (self.scratch / "warnings").write_text(json.dumps({"version": 3, "warnings": [
            {"code": "V501", "level": 1, "message": "m", "positions": places}]}))
        status, log, complaints = self.run_tool("sarif", "warnings")
        self.assertEqual((status, complaints), (0, []))
        for place in json.loads(log)["runs"][0]["results"][0]["locations"]:
            place = place["physicalLocation"]
            self.assertEqual(place["region"], {"startLine": 7, "endLine": 7})
            self.assertNotRegex(place["artifactLocation"]["uri"], "^//")


if __name__ == "__main__":
    unittest.main()
