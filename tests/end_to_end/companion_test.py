"""qln-fp-tree: all that surrounds a cleanup. Its page has a test of its own."""

import json
import os
import pathlib
import random
import resource
import subprocess
import unittest

from harness import BACKUP, PROGRAM, UNPRIVILEGED, EndToEnd, record

TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
# Content, markers to remove, and what is left, by name.
SOURCES = {
    "a b.cpp": (b"x  //-V501\ny //-V7\n", {1: [(501, 3, 10)]}, b"x  \ny //-V7\n"),
    "d e/q'\"$(f)\\n*.cpp": (b"//-V5//-V501 //-V5\r\n\0z //-V6", {
        1: [(5, 0, 5), (5, 13, 18)], 2: [(6, 3, 8)]}, b"//-V501 \r\n\0z "),
    "last": (b"x\n//-V5", {2: [(5, 0, 5)]}, b"x\n"),
    "only": (b"//-V9", {1: [(9, 0, 5)]}, b""),
}
BEFORE = {name: content for name, (content, _, _) in SOURCES.items()}
CLEANED = {name: cleaned for name, (_, _, cleaned) in SOURCES.items()}
SKIP = "nothing was cleaned; --skip cleans all else"
NEXT = "undo or keep: qln-fp-tree keep -r root\n"
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

    def run_tool(self, *arguments, around=(), **options):
        """As run_program; sees to it that nothing stays in the temporary directory."""
        here = list(self.temp.iterdir())
        done = subprocess.run([*around, TOOL, *arguments], cwd=self.scratch, timeout=300, env={
            **os.environ, "TMPDIR": str(self.temp)}, **{"capture_output": True, **options})
        if arguments[:1] != ("clean",):
            self.assertEqual(list(self.temp.iterdir()), here)
        return done.returncode, done.stdout, done.stderr

    def expect_tool(self, arguments, status=0, out="", complaints=(), **options):
        """Complaints may come in any order."""
        got = self.run_tool(*arguments, **options)
        self.assertEqual(got[:2], (status, out.encode()), got)
        self.assertEqual(sorted(got[2].decode().splitlines()),
                         sorted("qln-fp-tree: " + line for line in complaints))

    def test_command_line(self):
        version = self.run_program("--version")[1].decode()
        self.expect_tool(["--version"], out=version.replace("cleaner", "tree"))
        self.assertEqual(self.run_tool("help"), (0, self.run_tool("--help")[1], b""))
        for line in "keep -h", "help keep":
            self.expect_tool(line.split(), out="""\
Usage: qln-fp-tree keep -r ROOT [--list] [--path GLOB] [--without GLOB] [-q]

Give every cleaned source the permissions and owner of its backup, and delete
the backup.

  -r, --sourcetree-root ROOT  The project's root.
      --list                  Name each source, however many.
      --path GLOB             Only paths that match.
      --without GLOB          No paths that match.
  -q, --quiet                 Print only what is wrong.

Examples:

  qln-fp-tree keep -r project
  qln-fp-tree keep -r . --without third_party
""")
        for line, why in (
                ("", "no command"), ("-x", "Flag could not be matched: 'x'"),
                ("x", "no such command: x"), ("help lsit", "no such command: lsit (did you mean list?)"),
                ("undo --sat", "no such option: --sat (did you mean --stat?)"), ("undo", "undo needs -r ROOT"),
                ("keep -r", "Flag 'r' requires an argument but received none"),
                ("check -r .", "check needs REPORT..."),
                ("explain -r . f", "explain needs FILE[:LINE] REPORT..."),
                ("select -r . x", "select needs -o FILE"), ("undo -r . x", "too many words for undo"),
                ("undo -r . --keep", "undo has no option --keep"),
                ("sarif a b", "too many words for sarif")):
            self.expect_tool(line.split(), 2, "", [why + "; see qln-fp-tree --help"])
        self.expect_tool(["-r", "none", "keep"], 1, "", ["no such directory: none"])
        for command in "preview", "explain a", "select -o out":
            self.expect_tool([*command.split(), "-r", "root", "none"], 1, "", [
                "no such report: none"])

    def test_check(self):
        looked_at = "2 reports, 4 sources, 6 markers; every source is named by every report\n"
        self.expect_tool(["check", "-r", "root/", self.raw, "merged"],
                         out=f"all is well\n{looked_at}merged says the same as {self.raw}\n")
        for name, text in ("blank", "\n \n"), ("none", "{]}\n"), ("cut", '{"path": 1'):
            (self.scratch / name).write_text(text)
        records = [record("root/" + name, b"", {}) for name in ("a b.cpp", "no", "x\ny", "d e")]
        records[3]["hash"] = "BAD"
        self.raw_report("wrong", *records)
        (self.root / "a b.cpp").write_bytes(b"")
        self.expect_tool(["check", "-r", "root", "--list", "merged", "wrong", "gone", "root", "blank",
                          "none", "cut", "/dev/stdin"], 1, """\
8 reports, 7 sources, 6 markers; 7 sources not named by every report
/dev/stdin says the same as merged
root/a b.cpp: not named by gone, root, blank, none, cut
root/d e: not named by merged, gone, root, blank, none, cut, /dev/stdin
root/d e/q'"$(f)\\n*.cpp: not named by wrong, gone, root, blank, none, cut
root/last: not named by wrong, gone, root, blank, none, cut
root/no: not named by merged, gone, root, blank, none, cut, /dev/stdin
root/only: not named by wrong, gone, root, blank, none, cut
root/x\\ny: not named by merged, gone, root, blank, none, cut, /dev/stdin
""", [
            "no such report: gone", "no marker report but a folder: root", "empty report: blank",
            "no marker report from byte 2, line 1 on: none",
            "report cut short, or not to be checked: cut"], input=(self.scratch / self.raw).read_bytes())
        self.expect_tool(["check", "-r", "root", "wrong", "merged", "--path", "a b.cpp"], 1, """\
2 reports, 1 source, 1 marker; every source is named by every report
""", ["not the source that was analyzed: root/a b.cpp; another text was seen by merged"])
        self.expect_tool(["check", "-r", "root", "wrong", "--complete", "--without", "a b.cpp", "merged"], 1,
                         "2 reports, 6 sources, 5 markers; 6 sources not named by every report\n", [
            *(f"not named by every report: root/{name}" for name in (
                "d e", *list(SOURCES)[1:], "no", "x\\ny")),
            *(f"no such source: root/{name}" for name in ("d e", "no", "x\\ny"))])
        for command in "preview", "clean":
            errors = self.run_tool(command, "-r", "root", "wrong", "--complete", "merged")[2]
            self.assertEqual(errors.count(b"not named by every report: "), 6)
        self.source("a b.cpp", b"other")
        other = self.raw_report("other", record("root/a b.cpp", b"other", {}))
        mismatch = (f"Hash mismatch while merging reports for file '{self.root}/a b.cpp'. "
                    "Another text than before was seen by ")
        for command, reports in ("preview", [self.raw, other]), ("explain", ["x", other, self.raw]):
            self.expect_tool([command, "-r", "root", *reports], 1, "", [mismatch + reports[-1]])

    def test_one_cause_one_line(self):
        for end, why in ((b"\r\n", "they have other line ends, as a checkout can make them"),
                         (b"y\n", "another commit may be checked out, or the root is another folder")):
            names = [f"{n:04}" for n in range(1234)]
            self.raw_report("many", record("root/last", *SOURCES["last"][:2]), *(
                record(self.source(name, b"x" + end), b"x\n", {1: [(5, 0, 5)]}) for name in names))
            complaints = [f"not the source that was analyzed: root/{name}" for name in names]
            cause = "1,234 of 1,235 sources are not those that were analyzed: " + why
            for command, said in ("check", "1 report, 1,235 sources, 1,235 markers; every source is "
                                  "named by every report\n"), ("clean", ""):
                refused = ["nothing was cleaned; --skip cleans all else"][:command == "clean"]
                self.expect_tool([command, "-r", "root", "many"], 1, said, [
                    *complaints[:10], cause, "not the source that was analyzed: and 1,224 more; "
                    "--list names all", *refused])
                self.expect_tool([command, "-r", "root", "many", "--list"], 1, said, [
                    *complaints, cause, *refused])
        more = b"Hash mismatch for file: and 1,224 more; --list names all\n"
        self.assertIn(more, self.run_tool("preview", "-r", "root", "many")[2])

    def test_check_of_what_else_would_go_wrong(self):
        marked, markers = b"//-V5\n", {1: [(5, 0, 5)]}
        self.source("../out/x", marked)
        (self.root / "link").symlink_to("../out")
        (self.root / "y").symlink_to("../out/x")
        beside = {"inside": "source that is a link, and would become a file: ",
                  "is taken": "the place of the backup is taken, of: ",
                  "another" + BACKUP: "source with the name of another one's backup: ",
                  "n" * 250: "name too long for a backup's: ", "another": "a backup is there, keep or undo first: "}
        for name in beside:
            self.source(name, marked)
        (self.root / "inside").rename(self.root / "real")
        (self.root / "inside").symlink_to("real")
        (self.root / ("is taken" + BACKUP)).mkdir()
        self.structured_report("beside", *(record("|?|/" + name, marked, markers) for name in beside))
        self.expect_tool(["clean", "-r", "root", "beside"], 1, "", [
            SKIP, *(f"{what}root/{name}" for name, what in beside.items() if what)])
        report = self.structured_report("outside", *(
            record("|?|/" + name, marked, markers) for name in ("link/x", "y", "../out/x")))
        self.expect_tool(["check", "-r", "root", report], 1, "1 report, 3 sources, 3 markers; every "
                         "source is named by every report\n", [
            f"source outside the root: root/{name}" for name in ("link/x", "y", "../out/x")])
        self.temp.chmod(0o500)
        (self.root / "d e").chmod(0o555)
        (self.root / "last").chmod(0)
        self.addCleanup((self.root / "d e").chmod, 0o700)
        around = UNPRIVILEGED if os.geteuid() == 0 else ()
        errors = self.run_tool("check", "-r", "root", "merged", around=around)[2].decode()
        self.assertEqual(sorted(errors.replace("qln-fp-tree: ", "").splitlines()), [
            "source in a folder that may not be written: root/d e/q'\"$(f)\\n*.cpp",
            "source that may not be read: root/last",
            f"temporary directory that may not be written: {self.temp}"
            "; give the run one of its own: TMPDIR=$(mktemp -d)"])

    def test_preview(self):
        for name in self.raw, "merged", "/dev/stdin":
            report = (self.scratch / self.raw).read_bytes()
            status, patch, errors = self.run_tool("preview", name, "--sourcetree-root=root/", input=report)
            self.assertEqual((status, errors, patch[:len(PATCH)]), (0, b"", PATCH))
            self.assertEqual(self.tree(), BEFORE)
        self.expect_tool(["preview", "--stat", "-r", "root", "merged"], out="""\
a b.cpp: 1 marker on 1 line
d e/q'"$(f)\\n*.cpp: 3 markers on 2 lines
last: 1 marker on 1 line
only: 1 marker on 1 line
4 files, 6 markers on 5 lines
""")
        self.expect_tool(["preview", "--exit-code", "--stat=code", "-r", "root", "merged"], 3, """\
V005: 3 markers on 2 lines
V006: 1 marker on 1 line
V009: 1 marker on 1 line
V501: 1 marker on 1 line
4 files, 6 markers on 5 lines
""")
        self.raw_report("none", record("root/last", BEFORE["last"], {}))
        for line, status, why in (
                ("--exit-code none", 0, []), ("--exit-code merged gone", 1, ["no such report: gone"]),
                ("--stat=x none", 1, ["--stat counts by file or by code, not by x"])):
            self.expect_tool(["preview", "-r", "root", *line.split()], status, "", why)
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

    def test_preview_is_what_diff_prints(self):
        chance = random.Random(1)
        for number in range(40):
            lines = [b"%d" % n + chance.choice([b"", b"//-V5", b" //-V5//-V6 x"]) * (
                chance.random() < 0.2) for n in range(chance.randrange(1, 60))]
            content = b"\n".join(lines) + chance.choice([b"\n", b""])
            markers = {n: [(5, line.index(b"//"), line.index(b"//") + 5)]
                       for n, line in enumerate(lines, 1) if b"//" in line}
            self.source("x", content)
            self.source("y", content.replace(b"//-V5", b""))
            self.raw_report("one", record("root/x", content, markers))
            wanted = subprocess.run(["diff", "-u", "-L", "a/x", "-L", "b/x", "x", "y"],
                                    cwd=self.root, capture_output=True).stdout
            self.assertEqual(self.run_tool("preview", "-r", "root", "one"), (0, wanted, b""), number)

    def test_undo_and_keep(self):
        # Only root may give files away.
        owner, group = (12345, 54321) if os.geteuid() == 0 else (
            os.geteuid(), [os.getegid(), *os.getgroups()][-1])
        # user::rwx user:12345:rwx group::r-- mask::rwx other::r-x, as the system keeps it.
        access_list = bytes.fromhex("02000000" "01000700ffffffff" "0200070039300000"
                                    "04000400ffffffff" "10000700ffffffff" "20000500ffffffff")
        attributes = {"system.posix_acl_access": access_list, "user.origin": b"\0here"}
        for command, said, left in ("undo", "put back", BEFORE), ("keep", "kept", CLEANED):
            self.expect(["cleanup", "-r", "root", "merged"])
            for name in SOURCES:
                path = self.root / (name + BACKUP)
                os.chown(path, -1 if name == "last" else owner, group)
                path.chmod(0o1754)
                if command == "keep":
                    os.setxattr(self.root / name, "user.of_another", b"to go")
                if name == "last":
                    for key, value in attributes.items():
                        os.setxattr(path, key, value)
            self.expect_tool([command, "-r", "root"], out="".join(
                f"{said}: root/{name}\n" for name in SOURCES) + f"4 files {said}\n")
            self.assertEqual(self.tree(), left)
            for name in SOURCES:
                path = self.root / name
                mode, wanted = (0o1775, attributes) if name == "last" else (0o1754, {})
                self.assertEqual((oct(path.stat().st_mode & 0o7777), path.stat().st_uid,
                                  path.stat().st_gid), (
                                      oct(mode), os.geteuid() if name == "last" else owner, group))
                self.assertEqual({key: os.getxattr(path, key) for key in os.listxattr(path)}, wanted)
                path.chmod(0o644)
            self.expect_tool([command, "-r", "root"],
                             out="nothing to keep\n" if command == "keep" else "nothing to put back\n")

    def test_keep_what_its_owner_may_not_write(self):
        # user::r-- user:12345:r-- group::r-- mask::r-- other::r--: once it is set, or the mode, no
        # other attribute can be set.
        access_list = bytes.fromhex("02000000" "01000400ffffffff" "0200040039300000"
                                    "04000400ffffffff" "10000400ffffffff" "20000400ffffffff")
        wanted = {"system.posix_acl_access": access_list, "user.origin": b"here"}
        for name, attributes in ("last", wanted), ("only", {"user.origin": b"here"}):
            (self.root / (name + BACKUP)).write_bytes(BEFORE[name])
            (self.root / name).write_bytes(CLEANED[name])
            for key, value in reversed(attributes.items()):
                os.setxattr(self.root / (name + BACKUP), key, value)
            (self.root / (name + BACKUP)).chmod(0o444)
        self.expect_tool(["keep", "-r", "root"], out="kept: root/last\nkept: root/only\n2 files kept\n",
                         around=UNPRIVILEGED if os.geteuid() == 0 else ())
        for name, attributes in ("last", wanted), ("only", {"user.origin": b"here"}):
            path = self.root / name
            self.assertEqual((path.stat().st_mode & 0o777, {
                key: os.getxattr(path, key) for key in os.listxattr(path)}), (0o444, attributes))

    @unittest.skipIf(subprocess.run(["unshare", "-rm", "true"], capture_output=True).returncode,
                     "file systems cannot be mounted here")
    def test_several_file_systems(self):
        (self.root / "other").mkdir()
        (self.scratch / "do").write_text("""
            mount -t tmpfs none root/other && mount -t tmpfs -o size=64k none "$TMPDIR" || exit
            for i in a other/b; do printf '//-V5\n' >root/$i"$1"; echo >root/$i; done
            strace -f -qq -o calls -e trace=syncfs "$2" keep -r root
            stat root/a"$1" root/other/b"$1" 2>&1 | grep -c 'No such file'
            "$2" check -r root full""")
        big = b"//-V5\n" + b"x" * 80_000
        self.raw_report("full", *(record(self.source(name, text), text, {1: [(5, 0, 5)]})
                                  for name, text in (("big", big), *((f"s{i}", b"//-V5\n") for i in range(
                                      os.cpu_count())))))
        done = subprocess.run(["unshare", "-rm", "sh", "do", BACKUP, TOOL], cwd=self.scratch, env={
            **os.environ, "TMPDIR": str(self.temp)}, capture_output=True, text=True)
        self.assertEqual(done.stdout.splitlines()[:4], [
            "kept: root/a", "kept: root/other/b", "2 files kept", "2"])
        self.assertIn("too little room in the temporary directory", done.stderr)
        self.assertEqual((self.scratch / "calls").read_text().count("syncfs("), 2)

    def test_undo_and_keep_sources_of_several_names(self):
        for path in self.tree():
            (self.root / path).unlink()
        names = [f"{n:02}" for n in range(40)]
        self.source("00", b"//-V5\n")
        for name in names[1:]:
            os.link(self.root / "00", self.root / name)
        self.raw_report("linked", *(record("root/" + name, b"//-V5\n", {1: [(5, 0, 5)]})
                                    for name in names))
        for command, said in ("undo", "put back"), ("keep", "kept"):
            self.expect_tool(["clean", "-r", "root", "linked"],
                             out="40 files cleaned, 40 markers removed, 0 files refused\n" + NEXT)
            self.expect_tool([command, "-r", "root"], out="".join(
                f"{said}: root/{name}\n" for name in names) + f"40 files {said}\n")
        self.assertEqual(self.tree(), dict.fromkeys(names, b"\n"))

    def test_undo_and_keep_refuse(self):
        elsewhere = self.source("../out/x" + BACKUP, b"").with_name("x")
        elsewhere.write_bytes(b"")
        (self.root / "link").symlink_to(elsewhere.parent)
        (self.root / ("s" + BACKUP)).symlink_to("a b.cpp")
        (self.root / ("d" + BACKUP)).mkdir()
        (self.root / "folder").mkdir()
        original = b"a //-V5 b //-V6\nc //-V7\n"
        cut = [b"", b"a  b //-V6\n", b"a  b \nc", b"a  b //-V6\nc //-V7", b"a //", b"a //-V5 b //-V"]
        changed = [
            b"a  b \nc \n//-V8\n", b"a //-V6 b //-V6\nc //-V7\n", b"A  b \nc \n", b"a  b \nc //-V77\n",
            b"a  b \nc //-V7\n\n", b"a  b \nc //-V7 //-V7\n", b"ab \nc \n", b"a //-V b //-V6\nc "]
        for number, content in enumerate(cut):
            self.source(f"cut{number}" + BACKUP, original)
            self.source(f"cut{number}", content)
        for number, content in enumerate(changed):
            self.source(f"changed{number}" + BACKUP, original)
            self.source(f"changed{number}", content)
        for name in "gone", "folder":
            self.source(name + BACKUP, original)
        has_changed = "source has changed since the cleanup: root/"
        is_gone = "source of the backup is gone, or no regular file: root/"
        complaints = [is_gone + "folder", *(has_changed + f"changed{i}" for i in range(len(changed))),
                      *(f"backup is no regular file: root/{name}{BACKUP}" for name in "ds")]
        before = self.tree()
        self.assertIn(b"source has changed since the cleanup: and 4 more; --list names all\n",
                      self.run_tool("keep", "-r", "root")[2])
        self.expect_tool(["keep", "-r", "root", "--list"], 1, "0 files kept, 18 refused\n", [
            *complaints, is_gone + "gone", *(has_changed + f"cut{i}" for i in range(len(cut)))])
        self.assertEqual(self.tree(), before)
        back = [*(f"cut{i}" for i in range(len(cut))), "gone"]
        self.expect_tool(["undo", "-r", "root"], 1, "".join(
            f"put back: root/{name}\n" for name in back) + "7 files put back, 11 refused\n", complaints)
        for name in back:
            del before[name + BACKUP]
            before[name] = original
        self.assertEqual(self.tree(), before)

    def test_folders_that_may_not_be_looked_into(self):
        for name in ("d e", BACKUP):
            (self.root / "f" / name).mkdir(parents=True)
        (self.root / "f").chmod(0o444)
        self.addCleanup((self.root / "f").chmod, 0o700)
        self.expect_tool(["undo", "-r", "root"], 1, "nothing to put back\n", [
            f"cannot read root/f/{name}: Permission denied" for name in ("d e", BACKUP)],
            around=UNPRIVILEGED if os.geteuid() == 0 else ())

    def test_backups_that_may_not_be_read(self):
        backups = []
        for name, content in ("empty", b""), ("full", b"x\n"):
            self.source(name, content)
            backups.append(self.source(name + BACKUP, b"//-V5\n"))
        before = self.tree()
        for backup in backups:
            backup.chmod(0)
        for command, how in ("undo", "put back"), ("keep", "kept"):
            self.expect_tool([command, "-r", "root"], 1, f"0 files {how}, 2 refused\n", [
                f"cannot read root/{name}{BACKUP}" for name in ("empty", "full")],
                around=UNPRIVILEGED if os.geteuid() == 0 else ())
        for backup in backups:
            backup.chmod(0o600)
        self.assertEqual(self.tree(), before)

    def test_outputs_that_fail(self):
        self.expect(["cleanup", "-r", "root", "merged"])
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.run_tool("undo", "-r", "root", capture_output=False, stdout=full,
                                           stderr=subprocess.PIPE)[::2], (
                1, b"qln-fp-tree: cannot write the standard output: No space left on device\n"))
        self.assertEqual(self.tree(), BEFORE)
        for command in ["preview", "-r", "root", "merged"], ["undo", "-r", "root"]:
            if command[0] == "undo":
                self.expect(["cleanup", "-r", "root", "merged"])
            reader, writer = os.pipe()
            os.close(reader)
            self.assertEqual(self.run_tool(*command, capture_output=False, stdout=writer,
                                           stderr=subprocess.PIPE)[::2], (1, b""))
            os.close(writer)
        self.assertEqual(self.tree(), BEFORE)
        (self.scratch / "full").symlink_to("/dev/full")  # What goes wrong must not reach the device.
        self.expect_tool(["select", "-r", "root", "-o", "full", "merged"], 1, "", [
            "cannot write full: No space left on device"])

    def test_explain_against_every_line_looked_up(self):
        chance = random.Random(2)
        for _ in range(40):
            reports = []
            for number in range(3):
                lines = {line: chance.choice([[(5, 0, 5)], [(6, 0, 5)], [(5, 0, 5), (6, 6, 11)]])
                         for line in range(1, 6) if chance.random() < 0.7}
                files = [record("root/x" if number != 1 else "|?|/x", b"", lines)]
                make = self.structured_report if number == 1 else self.raw_report
                reports.append(make(f"r{number}", *files[:chance.random() < 0.8]))
            goes = {line: " ".join(f"V00{code}" for code in codes)
                    for line, codes in self.merged(*reports).get("|?|/x", {}).items()}
            named = {}
            for name in reports:
                text = (self.scratch / name).read_text()
                listed = json.loads(text) if text else []
                for file in listed.get("files", [listed]) if listed else []:
                    named[name] = {line["line"]: line["markers"] for line in file["lines"]}
            status, out, errors = self.run_tool("explain", "-r", "root", "x", *reports)
            if not named:
                self.assertEqual((status, errors), (1, b"qln-fp-tree: no report names x\n"))
                continue
            entries = [entry.split("\n") for entry in out.decode().split("root/x:")[1:]]
            said = [entry[0].split(": ") for entry in entries]
            self.assertEqual({int(line): what.removesuffix(" goes") for line, what in said
                              if what.endswith(" goes")}, goes)
            self.assertEqual({int(line) for line, _ in said}, set().union(*named.values()))
            for (line, _), entry in zip(said, entries):
                for name, vote in zip(reports, entry[1:]):
                    wanted = ("does not name the file" if name not in named else
                              "does not list the line" if int(line) not in named[name] else "lists ")
                    self.assertIn(f"    {name}: {wanted}", vote)

    def test_explain(self):
        last = [record("root/last", BEFORE["last"], markers) for markers in ({}, SOURCES["last"][1])]
        self.raw_report("less", last[0])
        self.raw_report("differing", last[1], *last)
        self.expect_tool(["explain", "-r", "root", "root/last:2:1:", "merged", "less", "differing"], out="""\
root/last:2: V005 stays
    merged: lists it
    less: does not list the line
    differing: lists it in 2 of 3 records
    | //-V5
""")
        self.expect_tool(["explain", "-r", "root", "last:3", "merged"], 1, "", ["no such line: root/last:3"])
        self.expect_tool(["explain", "-r", "root/d e", "a:1:2:3", self.raw], 1, "", ["no report names a:1:2:3"])
        self.expect_tool(["explain", "-r", "root", "last:1", "merged"], out="""\
root/last:1: listed by no report, and so left as it is
    | x
""")
        self.source("last", b"y\n//-V5\t\x1b[31m\xff")
        self.expect_tool(["explain", "-r", "root", "last", "merged"], out="""\
root/last:2: V005 goes
    merged: lists it
    | //-V5 \\x1b[31m\\xff
    but the source is not the one that was analyzed, and a cleanup leaves it
""")

    def test_select(self):
        self.raw_report("all", *(record("root/" + name, b"", {
            1: [(501, 0, 7), (502, 8, 15)], 2: [(6, 0, 5)], 3: [(600, 0, 7), (None, 8, 12)],
            4: [(699, 0, 7), (700, 8, 15)]}) for name in ("a/b.h", "a/c/b.cpp", "b.h")))
        everything = {1: [501, 502], 2: [6], 3: [600, None], 4: [699, 700]}
        for arguments, names, lines in (
                ("--code V501,V600-V699", "a/b.h a/c/b.cpp b.h", {1: [501], 3: [600], 4: [699]}),
                ("--code V6 --code V502", "a/b.h a/c/b.cpp b.h", {1: [502], 2: [6]}),
                ("--path *.h", "a/b.h b.h", everything), ("--path a", "a/b.h a/c/b.cpp", everything),
                ("--path **/b.h --without a/", "b.h", everything),
                ("--path a/**/b.*", "a/b.h a/c/b.cpp", everything), ("--path ./", "a/b.h a/c/b.cpp b.h", everything),
                ("--code 501,V600-699 --path |?|/a/b.h", "a/b.h", {1: [501], 3: [600], 4: [699]}),
                (f"--without-code V6,502-1000 --path {self.root}/a", "a/b.h a/c/b.cpp", {
                    1: [501], 3: [None]})):
            self.expect_tool(["select", "-r", "root", "-o", "out", *arguments.split(), "all"])
            self.assertEqual(self.merged("out"), {"|?|/" + name: lines for name in names.split()})
        self.expect_tool(["select", "-r", "root", "-o", "x", "--code", "V5,x", "all"], 1, "", [
            "no code, and no range of codes: x"])
        for one in "--code V1,7-9", "--without-code 7", "--path A", "--without /a/x":
            self.expect_tool(["select", "-r", "root", "-o", "x", "--path", "a", *one.split(), "all"], 1,
                             "", ["matches nothing: " + one])
        # As a merge writes it, also with a line that lists nothing; and for nobody else to read.
        self.raw_report("empty", record("root/x", b"", {1: [], 2: [(5, 0, 5)]}))
        self.merged("empty")
        (self.scratch / "out").chmod(0o600)
        (self.scratch / "out.part").write_bytes(b"mine")
        self.expect_tool(["select", "-r", "root", "-o", "out", "empty"])
        self.assertEqual((self.scratch / "out").read_bytes(), (
            self.scratch / "merged.json").read_bytes())
        self.assertEqual((oct((self.scratch / "out").stat().st_mode), (
            self.scratch / "out.part").read_bytes()), ("0o100600", b"mine"))

    def test_filters(self):
        odd = "d e/q'\"$(f)\\n*.cpp"
        fewer = {odd: b"//-V501 \r\n\0z //-V6", "last": CLEANED["last"]}  # Without V6.
        self.raw_report("one", record("root/last", BEFORE["last"], {2: [(5, 0, 5)]}),
                        record("root/gone", b"", {1: [(5, 0, 5)]}))
        for filters, cleaned in (
                ("--code 5 --without gone", fewer), ("--path d* --path last --without-code V6", fewer),
                ("--path last --path only --without |?|/only --without-code V6", {"last": CLEANED["last"]})):
            arguments = ["-r", "root", *filters.split(), "merged", "one"]
            self.assertEqual(self.run_tool("check", *arguments)[::2], (0, b""))
            stat = self.run_tool("preview", "--stat", *arguments)[1].decode().splitlines()
            self.assertEqual([line.split(":")[0] for line in stat[:-1]], list(cleaned))
            status, out, errors = self.run_tool("clean", *arguments)
            self.assertEqual((status, out.split()[0], errors), (0, b"%d" % len(cleaned), b""))
            self.assertEqual(self.tree(), {**BEFORE, **cleaned, **{
                name + BACKUP: BEFORE[name] for name in cleaned}})
            for paths in ["--path", "only"], ["--without", "last", "--path", "d e"], ["--path", "last"]:
                self.assertEqual(self.run_tool("undo", "-r", "root", *paths)[::2], (0, b""))
            self.assertEqual(self.tree(), BEFORE)
        self.assertEqual(self.run_tool("clean", "--keep", "-r", "root", "--path", "only", "merged"), (
            0, b"1 file cleaned, 1 marker removed, 0 files refused\nkept: root/only\n1 file kept\n", b""))
        for command in "check one", "explain last one", "page -o out one", "clean one", "keep":
            self.expect_tool([*command.split(), "-r", "root", "--path", "lst"], 1, "", [
                "matches nothing: --path lst"])
        self.raw_report("more", record("root/last", BEFORE["last"], {2: [(5, 0, 5), (6, 5, 10)]}))
        self.expect_tool(["explain", "-r", "root", "--code", "5", "last", "more", "one"], out="""\
root/last:2: V005 stays
    more: lists it
    one: lists other markers there: V005
    | //-V5
""")
        self.expect_tool(["explain", "-r", "root", "--without-code", "6", "last", "more"], out="""\
root/last:2: V005 goes
    more: lists it
    | //-V5
""")

    def test_reports_and_sources_that_are_given_twice(self):
        (self.scratch / "link").symlink_to("merged")
        for command in "check", "clean", "explain last", "preview", "select -o out", "page -o out":
            status, _, errors = self.run_tool(*command.split(), "-r", "root", "merged", "./link")
            self.assertEqual(status, 1)
            self.assertIn(b"report given twice: ./link\n", errors)
        for output, why in (("link", "one of the reports"), ("root/last", "a source that a report names")):
            for command in "select", "page":
                self.expect_tool([command, "-r", "root", "-o", output, "merged"], 1, "", [
                    f"the output is {why}: {output}"])
        records = [record("|?|/" + name, *SOURCES["last"][:2]) for name in ("last", "./last")]
        report = self.structured_report("spelt", *records)
        self.expect_tool(["clean", "-r", "root", report], 1, "", [
            "source that another record names in another spelling: root/last", SKIP])
        self.assertEqual(self.tree(), BEFORE)

    @unittest.skipIf("QLN_WIDE_ADDRESSES" in os.environ, "sanitizers keep their memory in files")
    def test_outputs_where_something_stands(self):
        (self.scratch / "older").write_bytes(b"older")
        (self.scratch / "link").symlink_to("older")
        def limit():  # A file of a killed run with our number, and a disk that is full.
            (self.scratch / f"older.part{os.getpid()}").write_bytes(b"left")
            resource.setrlimit(resource.RLIMIT_FSIZE, (20, 20))
        command = ["select", "-r", "root", "-o", "link", "merged"]
        self.expect_tool(command, 1, "", ["cannot write link: File too large"], preexec_fn=limit)
        self.assertEqual((self.scratch / "older").read_bytes(), b"older")
        self.expect_tool(command)
        self.assertTrue((self.scratch / "link").is_symlink())
        self.assertEqual((self.scratch / "older").read_bytes(), (self.scratch / "merged").read_bytes())

    def test_sarif(self):
        markers = {3: [(5, 0, 5), (501, 6, 13)], 0: [(5, 0, 5)]}
        self.structured_report("in", record("|?|/d e/\u00e4%:.cpp", b"", markers))
        self.expect(["report", "-o", "out", "in"])
        status, log, errors = self.run_tool("sarif", "out")
        self.assertEqual((status, errors), (0, b""))
        run, = json.loads(log)["runs"]
        rules = run["tool"]["driver"]["rules"]
        self.assertEqual([rule["id"] for rule in rules], ["V005", "V501"])
        for text in "shortDescription", "fullDescription", "help":
            self.assertIn("V005", rules[0][text]["text"])
        line3, uri = {"startLine": 3, "endLine": 3}, "d%20e/%C3%A4%25%3A.cpp"
        found = [(one["ruleId"], one["ruleIndex"], place.get("region"),
                  place["artifactLocation"]["uri"]) for one in run["results"]
                 for place in [one["locations"][0]["physicalLocation"]]]
        self.assertEqual(found, [("V005", 0, line3, uri), ("V501", 1, line3, uri),
                                 ("V005", 0, None, uri)])
        (self.scratch / "two").write_bytes((self.scratch / "out").read_bytes() * 2)
        (self.scratch / "odd").write_text('{"version": 3, "warnings": ["x"]}')
        (self.scratch / "large").write_bytes((self.scratch / "out").read_bytes().replace(
            b'"line": 3', b'"line": 4294967299'))
        (self.scratch / "newer").write_text('{"version": 4, "warnings": []}')
        for name in "in", "two", "root", "odd", "large", "newer":
            self.expect_tool(["sarif", name], 1, "", ["not a warnings report: " + name])
        self.expect_tool(["sarif", "gone"], 1, "", ["no such warnings report: gone"])
        with open("/dev/full", "wb") as full:
            self.assertIn(b"cannot write", self.run_tool(
                "sarif", "out", capture_output=False, stdout=full, stderr=subprocess.PIPE)[2])
        self.structured_report("in", record("x", b"", {n: [(5, 0, 5)] for n in range(25_001)}))
        self.expect(["report", "-o", "out", "in"])
        runs = json.loads(self.run_tool("sarif", "out")[1])["runs"]
        self.assertEqual([len(run["results"]) for run in runs], [25_000, 1])
        self.assertEqual(len({run["automationDetails"]["id"] for run in runs}), 2)

    def test_clean(self):
        done = "{} cleaned, {} removed, 0 files refused{}\n".format
        for said in done("4 files", "6 markers", "") + NEXT, done(
                "0 files", "0 markers", "; 4 files already clean"):
            self.expect_tool(["clean", "-r", "root", self.raw], out=said)
            self.assertEqual(self.tree(), {**CLEANED, **{name + BACKUP: content
                                                         for name, content in BEFORE.items()}})
        self.source("last", b"")  # As an interruption leaves it.
        (self.root / "only").unlink()
        for said, kept in (
                (done("2 files", "2 markers", "; 2 files already clean"), "".join(
                    f"kept: root/{name}\n" for name in SOURCES) + "4 files kept\n"),
                (done("0 files", "0 markers", "; 4 files already clean"), "nothing to keep\n")):
            self.expect_tool(["clean", "-r", "root", "--keep", "merged"], out=said + kept)
            self.assertEqual(self.tree(), CLEANED)

    def test_clean_refuses(self):
        self.source("only", b"changed")
        self.expect_tool(["clean", "-r", "root", "merged"], 1, "", [
            "not the source that was analyzed: root/only", SKIP])
        self.source("only", BEFORE["only"])
        self.expect_tool(["clean", "-r", "root", "merged", "gone"], 1, "", [
            "no such report: gone", "nothing was cleaned"])
        self.assertEqual(self.tree(), BEFORE)
        self.source("only" + BACKUP, BEFORE["only"])
        for text in b" ", b"x":  # What is behind the cleaned text is somebody's.
            self.source("only", CLEANED["only"] + text)
            self.expect_tool(["clean", "-r", "root", "merged"], 1, "", [
                "not the source that was analyzed: root/only", SKIP])

    def test_clean_skips(self):
        text, marked = b"//-V5 x\n//-V6\n", {1: [(5, 0, 5)], 2: [(6, 0, 5)]}
        for folder in "", "held/":
            self.source(folder + "x", text)
        (self.root / "only").unlink()
        self.source("last", b"changed")
        self.raw_report("more", record("root/x", text, marked), record("root/held/x", text, marked),
                        record("root/gone", b"", {}))
        (self.root / "held").chmod(0o555)
        self.addCleanup((self.root / "held").chmod, 0o700)
        around = UNPRIVILEGED if os.geteuid() == 0 else ()
        said = ["no such source: root/only", "not the source that was analyzed: root/last",
                "source in a folder that may not be written: root/held/x",
                "root/x:1: text behind the marker would become code"]
        self.expect_tool(["clean", "-r", "root", "merged", "more"], 1, "", [*said, SKIP], around=around)
        left = ("; left: 1 file changed since the analysis, 1 file gone, 1 file that may not be written "
                "or read, 1 line with text behind the marker\n")
        skip = ["clean", "-r", "root", "--skip", "merged", "more"]
        self.expect_tool(skip, 0, "3 files cleaned, 5 markers removed" + left + NEXT, said, around=around)
        after = {**CLEANED, "last": b"changed", "x": b"//-V5 x\n\n", "held/x": text}
        del after["only"]
        self.assertEqual({name: content for name, content in self.tree().items()
                          if not name.endswith(BACKUP)}, after)
        again = left.replace(", 1 line with text behind the marker", "")
        for _ in range(2):  # With backups, and without.
            self.expect_tool(skip, 0, "0 files cleaned, 0 markers removed; 3 files already clean" + again,
                             said[:3], around=around)
            self.run_tool("keep", "-r", "root")
            self.assertEqual(self.tree(), after)
        os.symlink("x", self.root / "link")  # What is refused for something else.
        self.structured_report("other", record("|?|/link", after["x"], marked),
                               record("|?|/x", after["x"], {1: marked[1]}))
        self.expect_tool([*skip[:4], "other"], 1, "0 files cleaned, 0 markers removed, 1 file refused; "
                         "left: 1 line with text behind the marker\n", [
            "source that is a link, and would become a file: root/link", said[3]])
        self.expect_tool([*skip, "none"], 1, "", ["no such report: none", "nothing was cleaned"])

    def test_clean_a_tree_that_moved(self):
        kinds = [(b"int x;  //-V501\n", [(501, 8, 15)], b"int x;  \n"), (b"\tint w;\n", [], None),
                 (b"int y; //-V501 //-V6\n", [(501, 7, 14), (6, 15, 20)], b"int y;  \n"),
                 (b"int z; //-V6 text\n", [(6, 7, 12)], None), (b"//-V501\n", [(501, 0, 7)], b"\n"),
                 (b"s = \"//-V6\";\n", [(6, 5, 10)], None)]
        chance, changed, wanted, records = random.Random(5), 0, {}, []
        for number in range(2000):
            lines = chance.choices(kinds, k=chance.randrange(1, 30))
            text = b"".join(before for before, _, _ in lines)
            after = b"".join(after or before for before, _, after in lines)
            records.append(record(f"root/moved/{number}", text, {
                place: markers for place, (_, markers, _) in enumerate(lines, 1) if markers}))
            if chance.random() < 0.025:
                changed += bool(records[-1]["lines"])
                text = after = b"new\n" + text
            self.source(f"moved/{number}", text)
            wanted[f"moved/{number}"] = after
        self.raw_report("moved", *records)
        for _ in range(2):
            status, out, errors = self.run_tool("clean", "--skip", "-r", "root", "moved")
            self.assertEqual((status, errors.count(b"not the source that was analyzed: ")), (0, changed))
            self.assertIn(b"left: %d files changed since the analysis, " % changed, out)
            self.run_tool("keep", "-q", "-r", "root")
            self.assertEqual(self.tree(), {**BEFORE, **wanted})

    def test_blanks(self):
        text = b"x \t //-V5 //-V6\r\n  //-V5\r\ny  //-V6 w //-V7\r\nz //-V5 \r\nlast  //-V6"
        markers = {1: [(5, 4, 9), (6, 10, 15)], 2: [(5, 2, 7)], 3: [(7, 11, 16)],
                   4: [(5, 2, 7)], 5: [(6, 6, 11)]}
        cleaned = b"x\r\n\r\ny  //-V6 w\r\nz  \r\nlast"
        self.source("s", text)
        self.source("t", text.replace(b"\t", b" "))
        self.raw_report("ends", *(record("root/" + name, (self.root / name).read_bytes(), markers)
                                  for name in "st"))
        patch = self.run_tool("preview", "--blanks", "-r", "root", "ends")[1]
        arguments = ["clean", "--blanks", "-r", "root", "ends"]
        done = "{}, 0 files refused{}\n".format
        for after, left in ("undo", text), ("keep", cleaned):
            for said in done("2 files cleaned, 12 markers removed", "") + NEXT, done(
                    "0 files cleaned, 0 markers removed", "; 2 files already clean"):
                self.expect_tool(arguments, out=said)
                self.assertEqual((self.root / "s").read_bytes(), cleaned)
            self.assertEqual(self.run_tool(after, "-r", "root")[::2], (0, b""))
            self.assertEqual(self.tree()["s"], left)
        self.expect_tool([*arguments, "--path", "t"], out=said.replace("2 files", "1 file"))
        self.expect_tool(arguments, 1, "", ["not the source that was analyzed: root/s", SKIP])
        self.source("s", text)
        self.source("t", text.replace(b"\t", b" "))
        subprocess.run(["patch", "-s", "-p1", "--binary", "-d", self.root], input=patch, check=True)
        self.assertEqual(self.tree(), {**BEFORE, "s": cleaned, "t": cleaned})

    def test_status(self):
        self.expect_tool(["status", "-r", "root"], out="0 backups\n")
        (self.scratch / "its root").symlink_to("root")
        self.assertIn(b"qln-fp-tree keep -r 'its root'\n", self.run_tool(
            "clean", "-r", "its root", "merged")[1])
        self.source("only", b"changed")
        (self.root / "last").unlink()
        (self.root / ("d" + BACKUP)).mkdir()
        odd = "d e/q'\"$(f)\\n*.cpp"
        before = self.tree()
        self.expect_tool(["status", "-r", "root"], 1, f"""\
root/a b.cpp: cleaned
root/{odd}: cleaned
root/last: broken off
root/only: changed
5 backups: 1 broken off, 1 changed, 2 cleaned
""", [f"backup is no regular file: root/d{BACKUP}"])
        self.assertEqual(self.tree(), before)
        self.expect_tool(["keep", "-q", "-r", "root", "--path", "a b.cpp"])
        self.expect_tool(["undo", "-q", "-r", "root", "--path", "last", "--path", "only"], 1, "", [
            "source has changed since the cleanup: root/only"])
        self.expect_tool(["clean", "-q", "-r", "root", "--path", "last", "merged"])


if __name__ == "__main__":
    unittest.main()
