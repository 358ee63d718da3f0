"""Cleaning sources: what is written, what is left, and what a failure leaves alone."""

import fcntl
import os
import pathlib
import stat
import subprocess
import time
import unittest

from harness import BACKUP, PROGRAM, UNPRIVILEGED, EndToEnd, file_system_error, record

MARKED = b"int a = 1;  //-V501 why\nint b; //-V502 //-V503\n"
CLEAN = b"int a = 1;   why\nint b;  \n"
MARKERS = {1: [(501, 12, 19)], 2: [(502, 7, 14), (503, 15, 22)]}


class Cleanup(EndToEnd):
    def marked(self, *names):
        """Writes sources, and a report on them; returns its name."""
        for name in names:
            self.source(name, MARKED)
        return self.structured_report("report", *(record(name, MARKED, MARKERS) for name in names))

    def lines_of_run(self, *around, **options):
        """The lines of a cleanup run by another command; it ends by itself, and with status 0."""
        run = subprocess.run([*around, PROGRAM, "cleanup", "-r", "root", "report"], text=True,
                             cwd=self.scratch, timeout=60, **{
                                 "env": {**os.environ, "TMPDIR": str(self.temp)},
                                 "stderr": subprocess.PIPE, **options})
        self.assertEqual(run.returncode, 0, run.stderr)
        return sorted((run.stderr or "").splitlines())

    def test_what_is_on_disk_afterwards(self):
        name = "d/\u00e4 '1' %1%"
        self.marked(name)
        source, backup = self.root / name, self.root / (name + BACKUP)
        source.chmod(0o755)
        self.source("other", MARKED)
        backup.write_bytes(b"an older backup")
        older, inode = self.scratch / "older", source.stat().st_ino
        older.hardlink_to(backup)
        for mask in 0o002, 0o077:
            source.write_bytes(MARKED)
            self.assertEqual(self.lines_of_run(umask=mask), [])
            self.assertEqual(self.tree(), {name: CLEAN, name + BACKUP: MARKED, "other": MARKED})
            self.assertEqual(list(self.temp.rglob("*")), [self.temp / "qln_fp_cleaner"])
            # The file is a new one, and so are its permissions; the backup is the file itself.
            self.assertEqual(stat.S_IMODE(source.stat().st_mode), 0o666 & ~mask)
            self.assertEqual(backup.stat().st_ino, inode)
            self.assertEqual(older.read_bytes(), b"an older backup")
            inode = source.stat().st_ino
        self.structured_report("report", record(name, CLEAN, {1: []}))
        self.assertEqual(self.lines_of_run(), [])  # A listed line, with nothing to remove.
        self.assertEqual((source.read_bytes(), backup.read_bytes()), (CLEAN, CLEAN))

    def test_a_failing_file_has_its_line_and_stops_no_other(self):
        good = [f"good{i}" for i in range(40)]
        changed = [f"changed{i}" + "x" * 200 for i in range(200)]
        self.marked(*good)
        for name in changed:
            self.source(name, b"new text")
        (self.root / "directory").mkdir()
        os.mkfifo(self.root / "pipe")
        (self.root / "zero").symlink_to("/dev/zero")
        self.source("hash", b"")
        self.source("a", MARKED)
        odd = ["directory", "pipe", "missing", "../../../dev/zero", "zero"]
        bad = changed + odd
        self.structured_report("report", *(record(name, MARKED, MARKERS) for name in changed + good),
                               *(record(name, b"", MARKERS) for name in odd),  # They are no files.
                               {**record("hash", b"", MARKERS), "hash": ""},
                               record("a\0b", MARKED, MARKERS))
        self.assertEqual(self.lines_of_run(), sorted([
            "Hash mismatch for file 'root/a",  # The line ends where the system's strings do.
            *(f"Hash mismatch for file 'root/{name}'." for name in [*bad, "hash"])]))
        self.assertEqual((self.root / "a").read_bytes(), MARKED)
        for name in good:
            self.assertEqual((self.root / name).read_bytes(), CLEAN)
        self.assertEqual(len(list(self.root.glob("*" + BACKUP))), len(good))

    def test_failures_on_the_way_leave_the_source(self):
        copies, backup = self.temp / "qln_fp_cleaner", self.root / ("d/a" + BACKUP)
        empty = {"env": {**os.environ, "TMPDIR": ""}}
        (self.scratch / "qln_fp_cleaner").mkdir()  # The root of a path that begins with nothing.
        for prepare, line, options in (
                (lambda: copies.write_bytes(b""), f"create_directory.*{copies}", {}),
                (lambda: None, "temp[_ ]directory[_ ]path.*root/d/a",
                 {"env": {**os.environ, "TMPDIR": "root/d/a"}}),
                (lambda: backup.mkdir(), "rename.*root/d/a", {}),
                (lambda: None, "temp[_ ]directory[_ ]path", empty),
                (lambda: self.temp.rmdir(), "temp[_ ]directory[_ ]path", {})):
            self.marked("d/a")
            prepare()
            self.expect_lines(self.lines_of_run(**options), [line])
            self.assertEqual(self.tree(), {"d/a": MARKED})
            subprocess.run(["rm", "-rf", copies, backup], check=True)
        self.structured_report("report", record("root/d/a", MARKED, MARKERS))
        self.expect(["cleanup", "-r", "", "report"], 0, b"",  # Without a root no file is found.
                    b"Hash mismatch for file 'root/d/a'.\n")
        self.assertEqual(self.tree(), {"d/a": MARKED})

    def test_missing_permissions(self):
        denied = "Permission denied"
        copies = self.temp / "qln_fp_cleaner"
        for path, mode, line in (
                (self.root / "d", 0o500,
                 file_system_error("rename", denied, "root/d/a", f"root/d/a{BACKUP}")),
                (self.root / "d", 0, file_system_error("(canonical|status)", denied, "root/d/a")),
                (self.root / "d/a", 0, "^Hash mismatch for file 'root/d/a'.$"),
                (copies, 0o500, file_system_error("cannot write the temporary file", denied,
                                                  f"{copies}/a")),
                (self.temp, 0o500, file_system_error("create_directory", denied, copies))):
            subprocess.run(["rm", "-rf", copies], check=True)
            if path == copies:
                copies.mkdir()
            self.marked("d/a")
            path.chmod(mode)
            lines = self.lines_of_run(*(UNPRIVILEGED if os.geteuid() == 0 else []))
            path.chmod(0o700)
            self.expect_lines(lines, [line])
            self.assertEqual(self.tree(), {"d/a": MARKED})

    def test_what_happens_while_another_run_has_its_turn(self):
        temporary = self.temp / "qln_fp_cleaner" / "a"
        temporary.parent.mkdir()

        def held():
            lock = open(temporary, "w")
            fcntl.flock(lock, fcntl.LOCK_EX)
            return lock

        def wait_for(run):
            while not any(temporary.samefile(link) for link in
                          pathlib.Path(f"/proc/{run.pid}/fd").iterdir() if link.exists()):
                self.assertIsNone(run.poll())
                time.sleep(0.01)

        edited, mismatch = b"x" * len(MARKED), b"^Hash mismatch for file 'root/a'.\n$"
        for edit, line, tree in (
                (lambda: self.source("a", edited), mismatch, {"a": edited}),
                (lambda: self.source("new", edited).rename(self.root / "a"), mismatch,
                 {"a": edited}),
                (lambda: None, b"^$", {"a": CLEAN, "a" + BACKUP: MARKED})):
            report = self.marked("a")
            with held():
                run = self.start_program("cleanup", "-r", "root", report)
                wait_for(run)
                edit()
                temporary.unlink()  # As the other run does at its end; then a third one comes.
                other = held()
            with other:
                wait_for(run)
            self.assertRegex(run.communicate(timeout=60)[1], line)
            self.assertEqual(run.returncode, 0)
            self.assertEqual((self.tree(), temporary.exists()), (tree, False))

    def test_equal_bare_names_take_turns(self):
        contents = {f"d{i}/utils.cpp": b"// %d //-V1\n" % i * (1000 + i) for i in range(100)}
        records = []
        for name, content in contents.items():
            self.source(name, content)
            begin = content.index(b"//-V")
            records.append(record(name, content, {
                line: [(1, begin, begin + 5)] for line in range(1, content.count(b"\n") + 1)}))
        report = self.structured_report("report", *records)
        # Several processes at once over trees of the same names are kept apart just so.
        copies = [self.scratch / f"copy{i}" for i in range(8)]
        for copy in copies:
            subprocess.run(["cp", "-r", self.root, copy], check=True)
        runs = [self.start_program("cleanup", "-r", copy, report) for copy in copies]
        for run, copy in zip(runs, copies):
            self.assertEqual((run.communicate(timeout=60)[1], run.returncode), (b"", 0))
            for name, content in contents.items():
                self.assertEqual((copy / name).read_bytes(), content.replace(b"//-V1", b""))
                self.assertEqual((copy / (name + BACKUP)).read_bytes(), content)


if __name__ == "__main__":
    unittest.main()
