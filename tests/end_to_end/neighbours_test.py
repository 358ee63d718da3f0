"""Other runs, editors, links and limits around a cleanup and its companion: none costs a byte."""

import fcntl
import os
import pathlib
import re
import resource
import subprocess
import time
import unittest

from harness import BACKUP, PROGRAM, EndToEnd, record

MARKED = b"int a;  //-V501\n"
CLEAN = b"int a;  \n"
EDIT = b"saved by an editor"
CLEANUP = [PROGRAM, "cleanup", "-r", "root", "report"]
TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
WAS_CHANGED = "qln-fp-tree: source has changed while it was looked at: root/a\n"


class Neighbours(EndToEnd):
    def marked(self, *names, text=MARKED):
        for name in names:
            self.source(name, text)
        return self.structured_report("report", *(record(name, text, {1: [(501, 8, 15)]})
                                                  for name in names))

    def start(self, *around, temp=None, command=CLEANUP):
        run = subprocess.Popen([*around, *command], stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, cwd=self.scratch, text=True,
                               env={**os.environ, "TMPDIR": str(temp or self.temp),
                                    # The search for leaks does not work under strace.
                                    "ASAN_OPTIONS": f"detect_leaks={0 if around else 1}"})
        self.addCleanup(run.wait)
        self.addCleanup(run.kill)
        return run

    def lines(self, run):
        errors = run.communicate(timeout=120)[1]
        self.assertEqual(run.returncode, 0, errors)
        return errors.splitlines()

    def held_up(self, call, when, command=CLEANUP):
        """A cleanup of "a" that stops for a second before ("enter") or after ("exit") a call."""
        run = self.start("strace", "-f", "-qq", "-o", "calls", "-e", f"trace={call}", "-e",
                         f"inject={call}:delay_{when}=1000000", command=command)
        calls = self.scratch / "calls"
        while run.poll() is None and not (calls.exists() and calls.stat().st_size):
            time.sleep(0.01)
        time.sleep(0.2)
        return run

    def test_several_runs_over_one_tree_keep_the_originals(self):
        own = self.scratch / "own"
        own.mkdir()
        names = [f"f{i}" for i in range(160)]
        self.marked(*names)
        for run in [self.start(temp=path) for path in (self.temp, own, own)]:
            self.lines(run)  # Who comes second says so, in words that depend on when.
        self.assertEqual(self.tree(), {**dict.fromkeys(names, CLEAN),
                                       **{name + BACKUP: MARKED for name in names}})

    def test_what_is_not_our_temporary_file_is_refused(self):
        copies = self.temp / "qln_fp_cleaner"
        copies.mkdir()
        other = self.scratch / "other"
        for prepare in (lambda path: path.symlink_to(self.root / "a"),
                        lambda path: path.symlink_to(other), lambda path: path.hardlink_to(other),
                        lambda path: path.hardlink_to(self.root / "a"), lambda path: path.mkdir(),
                        lambda path: os.mkfifo(path)):
            self.marked("a")
            other.write_bytes(b"other")
            prepare(copies / "a")
            line, = self.lines(self.start())
            self.assertRegex(line, f"temporary file.*{copies}/a")
            self.assertEqual((self.tree(), other.read_bytes()), ({"a": MARKED}, b"other"))
            subprocess.run(["rm", "-r", copies / "a"], check=True)
        (self.scratch / "root/a").unlink()
        self.root.rmdir()
        self.root.symlink_to(copies)  # The tree is the directory of the temporary files.
        self.marked("a", "d/a", "d/b")
        self.source("b", b"not listed")
        self.assertEqual(len(self.lines(self.start())), 3)
        self.assertEqual(self.tree(), {"a": MARKED, "d/a": MARKED, "d/b": MARKED,
                                       "b": b"not listed"})

    def test_a_backup_that_is_the_source_is_refused(self):
        self.marked("a", "link" + BACKUP)
        (self.root / ("a" + BACKUP)).hardlink_to(self.root / "a")
        (self.root / "link").symlink_to("link" + BACKUP)
        self.structured_report("report", *(record(name, MARKED, {1: [(501, 8, 15)]})
                                           for name in ("a", "link")))
        before = self.tree()
        lines = sorted(self.lines(self.start()))
        self.assertEqual((len(lines), self.tree()), (2, before))
        for line, name in zip(lines, ("a", "link")):
            self.assertRegex(line, f"another name of the source.*root/{name}.*root/{name}{BACKUP}")

    def test_a_file_system_without_locks(self):
        texts = {f"d{i}/same": MARKED + b"%d\n" % i * 100000 for i in range(6)}
        self.structured_report("report", *(record(name, text, {1: [(501, 8, 15)]})
                                           for name, text in texts.items()))
        for name, text in texts.items():
            self.source(name, text)
        (self.temp / "qln_fp_cleaner").mkdir()  # And a killed run left a long file there.
        (self.temp / "qln_fp_cleaner/same").write_bytes(b"stale" * 1000000)
        self.assertEqual(self.lines(self.start(
            "strace", "-f", "-qq", "-o", "calls", "-e", "trace=flock,write", "-e",
            "inject=flock:error=ENOLCK", "-e", "inject=write:delay_exit=50000")), [])
        calls = (self.scratch / "calls").read_text().splitlines()
        workers = {line.split()[0] for line in calls if "write(" in line}
        self.assertEqual(len(workers) > 1, len(os.sched_getaffinity(0)) > 1)
        for name, text in texts.items():
            self.assertEqual(((self.root / name).read_bytes(),
                              (self.root / (name + BACKUP)).read_bytes()),
                             (text.replace(MARKED, CLEAN), text))

    def companion(self, *arguments):
        """Status, standard output and standard error."""
        run = self.start(command=[TOOL, *arguments])
        return (*run.communicate(timeout=60), run.returncode)

    def test_keep_waits_for_a_run_at_work(self):
        self.marked("a")
        self.lines(self.start())
        with (self.root / "a").open() as source:
            fcntl.flock(source, fcntl.LOCK_EX)
            run = self.start(command=[TOOL, "keep", "-r", "root"])
            time.sleep(0.5)
            self.source("a", EDIT)
        self.assertEqual((*run.communicate(), run.returncode),
                         ("0 files kept, 1 refused\n", WAS_CHANGED, 1))
        self.assertEqual(self.tree(), {"a": EDIT, "a" + BACKUP: MARKED})

    def test_no_progress_in_a_log(self):
        self.marked("a", "b")
        self.lines(self.start())
        run = self.held_up("flock", "enter", [TOOL, "undo", "-r", "root"])
        self.assertEqual((*run.communicate(), run.returncode), (
            "put back: root/a\nput back: root/b\n2 files put back\n", "", 0))

    def test_undo_and_clean_leave_a_run_at_work_alone(self):
        self.marked("a")
        self.lines(self.start())
        with (self.root / "a").open() as source:
            fcntl.flock(source, fcntl.LOCK_EX)
            self.assertEqual(self.companion("undo", "-r", "root"),
                             ("0 files put back, 1 refused\n", WAS_CHANGED, 1))
        (self.root / "a").write_bytes(CLEAN[:3])
        at_work = (self.root / "a").stat().st_ino
        with (self.root / ("a" + BACKUP)).open() as backup:
            fcntl.flock(backup, fcntl.LOCK_EX)
            run = self.start(command=[TOOL, "clean", "-r", "root", "report"])
            time.sleep(0.5)
            self.assertIsNone(run.poll())
            (self.root / "a").write_bytes(CLEAN)
        self.assertEqual((run.communicate()[1], run.returncode), ("", 0))
        self.assertEqual((self.tree(), (self.root / "a").stat().st_ino), (
            {"a": CLEAN, "a" + BACKUP: MARKED}, at_work))
        (self.root / ("a" + BACKUP)).unlink()
        os.link(self.root / "a", self.root / ("a" + BACKUP))
        self.assertEqual(self.companion("undo", "-r", "root")[2], 0)
        self.assertEqual(self.tree(), {"a": CLEAN})

    def test_links_that_are_swapped_for_a_folder(self):
        for folder in self.root / "in", self.scratch / "out":
            folder.mkdir()
            (folder / "a").write_bytes(CLEAN)
            (folder / ("a" + BACKUP)).write_bytes(MARKED)
            (folder / ("a" + BACKUP)).chmod(0o600)
        out, away = self.scratch / "out/a", self.root / "away"
        (self.root / "link").symlink_to(self.scratch / "out")
        before = out.stat()
        for command in "keep", "undo":
            for _ in range(40):
                run = self.start(command=[TOOL, command, "-r", "root"])
                while run.poll() is None:
                    for name, other in ("in", away), ("link", self.root / "in"), ("in", self.root / "link"), (
                            "away", self.root / "in"):
                        (self.root / name).rename(other)
                run.communicate()
                (self.root / "in/a").write_bytes(CLEAN)
                (self.root / ("in/a" + BACKUP)).write_bytes(MARKED)
        self.assertEqual((out.stat().st_mode, out.stat().st_mtime_ns, out.read_bytes()), (
            before.st_mode, before.st_mtime_ns, CLEAN))
        self.assertEqual(out.with_name("a" + BACKUP).read_bytes(), MARKED)

    def test_closed_standard_streams(self):
        self.marked("a")
        for command in CLEANUP, [TOOL, "undo", "-r", "root"]:
            shell = 'exec strace -f -o calls -e trace=openat "$@" 0<&- 1>&- 2>&-'
            self.start("bash", "-c", shell, "-", command=command).communicate()
            calls = (self.scratch / "calls").read_text()
            opened = re.split(r'"/", O_RDONLY\) += 2\n', calls)[-1]
            self.assertIn("a" + BACKUP if command is not CLEANUP else "root/a", opened)
            # But for what a build that counts coverage writes at its end.
            self.assertNotRegex(opened, "(?m)^(?!.*profraw).*= [012]$")
        self.assertEqual(self.tree(), {"a": MARKED})

    def test_nobody_reads_the_output(self):
        report = self.marked("a")
        for arguments in (["--help"], ["--version"], ["merge", "-r", "root", "-o", "/dev/stdout",
                          report], ["report", "-o", "/dev/stdout", report]):
            read, write = os.pipe()
            os.close(read)
            with open(write, "wb") as closed:
                run = subprocess.run([PROGRAM, *arguments], cwd=self.scratch, stdout=closed,
                                     stderr=subprocess.PIPE, timeout=60)
            self.assertEqual((run.returncode, run.stderr), (0, b""), arguments)

    @unittest.skipIf("QLN_WIDE_ADDRESSES" in os.environ, "sanitizers keep their memory in files")
    def test_a_limit_on_file_sizes(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (10000, 10000))
        large = MARKED + b"x" * 20000
        self.marked("small", "large")
        self.source("large", large)
        report = self.structured_report("report", *(
            record(name, text, {1: [(501, 8, 15)]})
            for name, text in (("small", MARKED), ("large", large))))
        status, _, errors = self.run_program("cleanup", "-r", "root", report, preexec_fn=limit)
        self.assertRegex(errors.decode(), r"^filesystem error: .*File too large.*/large.*\n$")
        self.assertEqual((status, self.tree()),
                         (0, {"small": CLEAN, "small" + BACKUP: MARKED, "large": large}))
        self.assertEqual(list((self.temp / "qln_fp_cleaner").iterdir()), [])


if __name__ == "__main__":
    unittest.main()
