"""Cleaning sources: what is written, what is left, and what a failure leaves alone."""

import fcntl
import hashlib
import os
import pathlib
import shutil
import stat
import subprocess
import time
import unittest

from harness import BACKUP, EndToEnd, record

MARKED = b"int a = 1;  //-V501 why\nint b; //-V502 //-V503\n"
CLEAN = b"int a = 1;   why\nint b;  \n"
MARKERS = {1: [(501, 12, 19)], 2: [(502, 7, 14), (503, 15, 22)]}


class Cleanup(EndToEnd):
    def cleanup(self, *names, err=b"", content=MARKED, markers=None):
        report = self.raw_report("report", *(record(self.root / name, content, markers or MARKERS)
                                             for name in names))
        self.expect(["cleanup", "-r", "root", report], 0, b"", err)

    def mismatch(self, name):
        return b"Hash mismatch for file 'root/%s'.\n" % os.fsencode(name)

    def test_what_is_on_disk_afterwards(self):
        source = self.source("d/a b.cpp", MARKED)
        source.chmod(0o755)
        self.source("other.cpp", MARKED)
        self.cleanup("d/a b.cpp")
        self.assertEqual(self.tree(), {"d/a b.cpp": CLEAN, "d/a b.cpp" + BACKUP: MARKED,
                                       "other.cpp": MARKED})
        self.assertEqual(list(self.temp.rglob("*")), [self.temp / "qln_fp_cleaner"])
        # The file is a new one, and so are its permissions.
        self.assertEqual(stat.S_IMODE(source.stat().st_mode), 0o666 & ~self.umask())

    def umask(self):
        mask = os.umask(0)
        os.umask(mask)
        return mask

    def test_files_without_agreed_markers(self):
        self.source("a", MARKED)
        self.expect(["cleanup", "-r", "root", self.raw_report("none")])
        self.assertEqual((self.tree(), list(self.temp.rglob("*"))), ({"a": MARKED}, []))
        self.cleanup("a", markers={1: []})  # A listed line, with nothing to remove.
        self.assertEqual(self.tree(), {"a": MARKED, "a" + BACKUP: MARKED})

    def test_names_of_every_kind(self):
        names = ["it's {1}.cpp", '"q" %1%', "\u00e4/\u00df", "-o", "x" * 236]
        for name in names:
            self.source(name, MARKED)
        self.cleanup(*names)
        for name in names:
            self.assertEqual((self.root / name).read_bytes(), CLEAN)

    def test_a_failing_file_has_its_line_and_stops_no_other(self):
        good = [f"good{i}" for i in range(40)]
        changed = [f"changed{i}" for i in range(40)]
        for name in good + changed:
            self.source(name, MARKED if name in good else b"new text")
        (self.root / "directory").mkdir()
        os.mkfifo(self.root / "pipe")
        (self.root / "zero").symlink_to("/dev/zero")
        bad = changed + ["directory", "pipe", "missing", "../../../dev/zero"]
        report = self.structured_report("report", *(record(name, MARKED, MARKERS)
                                                    for name in good + bad + ["zero"]))
        status, out, err = self.run_program("cleanup", "-r", "root", report)
        self.assertEqual((status, out), (0, b""))
        self.assertEqual(sorted(err.splitlines(True)),
                         sorted(map(self.mismatch, bad + ["zero"])))
        for name in good:
            self.assertEqual((self.root / name).read_bytes(), CLEAN)
        self.assertFalse(list(self.root.glob("changed*" + BACKUP)))

    def test_a_recorded_hash_must_be_the_lowercase_one(self):
        self.source("a", MARKED)
        self.source("A", b"")
        upper = hashlib.sha1(MARKED).hexdigest().upper()
        report = self.raw_report("report", {**record("root/a", MARKED, MARKERS), "hash": upper},
                                 {**record("root/A", b"", MARKERS), "hash": ""},
                                 {**record("root/missing", b"", MARKERS), "hash": ""})
        status, _, err = self.run_program("cleanup", "-r", "root", report)
        self.assertEqual((status, sorted(err.splitlines(True))),
                         (0, sorted(map(self.mismatch, ["a", "A", "missing"]))))
        self.assertEqual(self.tree(), {"a": MARKED, "A": b""})

    def test_without_a_root_no_file_is_found(self):
        self.source("a", MARKED)
        report = self.structured_report("report", record("root/a", MARKED, MARKERS))
        self.expect(["cleanup", "-r", "", report], 0, b"", b"Hash mismatch for file 'root/a'.\n")

    def test_failures_on_the_way_leave_the_source(self):
        self.source("a", MARKED)
        report = self.raw_report("report", record("root/a", MARKED, MARKERS))
        directory = self.temp / "qln_fp_cleaner"
        for prepare, in_message in (
                (lambda: directory.write_bytes(b""), "qln_fp_cleaner"),
                (lambda: (directory.mkdir(), (self.root / ("a" + BACKUP)).mkdir()), "rename"),
                (lambda: ((self.root / ("a" + BACKUP)).rmdir(), self.temp.rmdir()),
                 "temp_directory_path")):
            prepare()
            status, _, err = self.run_program("cleanup", "-r", "root", report)
            self.assertEqual((status, err.count(b"\n")), (0, 1))
            self.assertRegex(err.decode(), in_message.replace("_", "[_ ]"))
            self.assertEqual(self.tree(), {"a": MARKED})
            subprocess.run(["rm", "-rf", directory], check=True)

    def test_what_a_killed_run_left_in_the_temporary_directory(self):
        self.source("a", MARKED)
        report = self.raw_report("report", record("root/a", MARKED, MARKERS))
        stale = self.temp / "qln_fp_cleaner" / "a"
        stale.parent.mkdir()
        # A file that cannot be written, here because it is being run, is not taken for ours.
        shutil.copy("/bin/sleep", stale)
        try:
            sleeping = subprocess.Popen([stale, "60"])
        except PermissionError:
            self.skipTest("no program may run in the temporary directory")
        with sleeping:
            status, _, err = self.run_program("cleanup", "-r", "root", report)
            sleeping.kill()
        self.assertEqual((status, self.tree()), (0, {"a": MARKED}))
        self.assertIn(b"cannot write the temporary file", err)
        # Any other is written over, from its beginning to its end.
        self.expect(["cleanup", "-r", "root", report])
        self.assertEqual(self.tree(), {"a": CLEAN, "a" + BACKUP: MARKED})

    def test_a_source_that_changes_while_another_run_has_its_turn(self):
        source = self.source("a", MARKED)
        report = self.raw_report("report", record("root/a", MARKED, MARKERS))
        temporary = self.temp / "qln_fp_cleaner" / "a"
        temporary.parent.mkdir()
        with open(temporary, "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            run = self.start_program("cleanup", "-r", "root", report)
            while not any(temporary.samefile(link) for link in
                          pathlib.Path(f"/proc/{run.pid}/fd").iterdir() if link.exists()):
                time.sleep(0.01)
            source.write_bytes(b"saved by an editor")
        _, err = run.communicate(timeout=60)
        self.assertEqual((run.returncode, err), (0, self.mismatch("a")))
        self.assertEqual(self.tree(), {"a": b"saved by an editor"})
        self.assertFalse(temporary.exists())

    def test_several_runs_over_one_tree_keep_the_originals(self):
        names = [f"f{i}" for i in range(50)]
        report = self.structured_report("report", *(record(name, MARKED, MARKERS)
                                                    for name in names))
        for name in names:
            self.source(name, MARKED)
        runs = [self.start_program("cleanup", "-r", "root", report) for _ in range(3)]
        for run in runs:
            run.communicate(timeout=60)  # Who comes second says so, in words that depend on when.
            self.assertEqual(run.returncode, 0)
        self.assertEqual(self.tree(), {**dict.fromkeys(names, CLEAN),
                                       **{name + BACKUP: MARKED for name in names}})

    def test_an_error_line_that_nobody_reads_stops_nothing(self):
        good = [f"good{i}" for i in range(50)]
        for name in good:
            self.source(name, MARKED)
        report = self.structured_report("report", *(record(name, MARKED, MARKERS) for name in
                                                    [f"bad{i}" for i in range(50)] + good))
        run = self.start_program("cleanup", "-r", "root", report)
        run.stderr.close()
        self.assertEqual(run.wait(timeout=60), 0)
        for name in good:
            self.assertEqual((self.root / name).read_bytes(), CLEAN)

    def test_a_path_with_a_nul_names_no_file(self):
        self.source("a", MARKED)
        report = self.structured_report("report", record("a\0b", MARKED, MARKERS))
        # The line ends where the system's strings do.
        self.expect(["cleanup", "-r", "root", report], 0, b"", b"Hash mismatch for file 'root/a\n")
        self.assertEqual(self.tree(), {"a": MARKED})

    def test_a_linked_source_becomes_a_file(self):
        target = self.scratch / "target"
        target.write_bytes(MARKED)
        (self.root / "a").symlink_to(target)
        report = self.structured_report("report", record("a", MARKED, MARKERS))
        self.expect(["cleanup", "-r", "root", report])
        self.assertEqual((target.read_bytes(), (self.root / "a").read_bytes()), (MARKED, CLEAN))
        self.assertTrue((self.root / ("a" + BACKUP)).is_symlink())

    def test_equal_bare_names_take_turns(self):
        contents = {f"d{i}/utils.cpp": b"// %d //-V1\n" % i * (1000 + i) for i in range(100)}
        records = []
        for name, content in contents.items():
            self.source(name, content)
            begin = content.index(b"//-V")
            records.append(record(self.root / name, content, {
                line: [(1, begin, begin + 5)] for line in range(1, content.count(b"\n") + 1)}))
        report = self.raw_report("report", *records)
        # Several processes at once over trees of the same names are kept apart just so.
        copies = [self.scratch / f"copy{i}" for i in range(8)]
        for copy in copies:
            subprocess.run(["cp", "-r", self.root, copy], check=True)
        self.expect(["merge", "-r", "root", "-o", "merged", report])
        runs = [self.start_program("cleanup", "-r", copy, "merged") for copy in copies]
        for run, copy in zip(runs, copies):
            self.assertEqual((run.communicate(timeout=60)[1], run.returncode), (b"", 0))
            for name, content in contents.items():
                self.assertEqual((copy / name).read_bytes(), content.replace(b"//-V1", b""))
                self.assertEqual((copy / (name + BACKUP)).read_bytes(), content)

    def test_one_long_line_in_a_large_file(self):
        content = b"x" * (40 << 20) + b"//-V501\n"
        self.source("a", content)
        self.cleanup("a", content=content, markers={1: [(501, 40 << 20, (40 << 20) + 7)]})
        self.assertTrue((self.root / "a").read_bytes() == content.replace(b"//-V501", b""))


if __name__ == "__main__":
    unittest.main()
