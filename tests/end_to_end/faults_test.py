"""Full disks, missing permissions, and files that others take away or are still writing."""

import fcntl
import json
import os
import pathlib
import subprocess
import threading
import time
import unittest

from harness import BACKUP, PROGRAM, EndToEnd, file_system_error, record

MARKED = b"int a;  //-V501\n"
CLEAN = b"int a;  \n"
REST = b"x" * 20000
# Root has to give up its right to pass over permissions.
UNPRIVILEGED = ["setpriv", "--bounding-set", "-dac_override,-dac_read_search"]
MOUNTING = ["unshare", "--map-root-user", "--mount"]
CAN_MOUNT = subprocess.run([*MOUNTING, "true"], capture_output=True).returncode == 0


class Faults(EndToEnd):
    def marked(self, *names, rest=b""):
        """Writes sources, and a report on them."""
        for name in names:
            self.source(name, MARKED + rest)
        self.structured_report("report", *(record(name, MARKED + rest, {1: [(501, 8, 15)]})
                                           for name in names))

    def cleanup(self, *around, stderr=subprocess.PIPE):
        """The lines of a cleanup run by another command; it ends by itself, and with status 0."""
        run = subprocess.run([*around, PROGRAM, "cleanup", "-r", "root", "report"], stderr=stderr,
                             cwd=self.scratch, env={**os.environ, "TMPDIR": str(self.temp)},
                             timeout=60)
        self.assertEqual(run.returncode, 0, run.stderr)
        return sorted((run.stderr or b"").decode().splitlines())

    @unittest.skipUnless(CAN_MOUNT, "may not mount; scripts/faults makes writes fail instead")
    def test_a_full_temporary_file_system(self):
        self.marked("a", "b", rest=REST)
        before = self.tree()
        copies = f"{self.temp}/qln_fp_cleaner"
        full = file_system_error("create_directory", "No space left on device", copies)
        absent = [file_system_error("cannot write the temporary file", "No space left on device",
                                    f"{copies}/{name}") for name in "ab"]
        for mount, errors in (('nr_inodes=1 none "$0"', [full, full]),
                              ('nr_inodes=2 none "$0" && mkdir "$0/qln_fp_cleaner"', absent),
                              ('size=8k none "$0"', [])):
            self.expect_lines(self.cleanup(*MOUNTING, "sh", "-c",
                                           f'mount -t tmpfs -o {mount} && exec "$@"', self.temp),
                              errors)
            if errors:
                self.assertEqual(self.tree(), before)
        for name in "ab":  # A copy that was cut short gets no line; the backup has it all.
            self.assertEqual((self.root / (name + BACKUP)).read_bytes(), MARKED + REST)
            self.assertLessEqual((self.root / name).stat().st_size, 8192)
            self.assertTrue((CLEAN + REST).startswith((self.root / name).read_bytes()))

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
            lines = self.cleanup(*(UNPRIVILEGED if os.geteuid() == 0 else []))
            path.chmod(0o700)
            self.expect_lines(lines, [line])
            self.assertEqual(self.tree(), {"d/a": MARKED})

    def test_a_source_that_goes_away_while_another_run_has_its_turn(self):
        self.marked("d/a", "e/a")
        temporary = self.temp / "qln_fp_cleaner" / "a"
        temporary.parent.mkdir()
        with open(temporary, "w") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            run = self.start_program("cleanup", "-r", "root", "report")
            while not any(temporary.samefile(link) for link in
                          pathlib.Path(f"/proc/{run.pid}/fd").iterdir() if link.exists()):
                time.sleep(0.01)
            (self.root / "d").rename(self.scratch / "d")
        _, err = run.communicate(timeout=60)
        self.assertRegex(err, rb"^[^\n]*root/d/a[^\n]*\n$")
        self.assertEqual(run.returncode, 0)
        self.assertEqual(self.tree(), {"e/a": CLEAN, "e/a" + BACKUP: MARKED})
        self.assertEqual((self.scratch / "d/a").read_bytes(), MARKED)

    def test_a_report_that_is_being_written(self):
        records = [record(f"{i:03}", b"", {line: [(1, 0, 5)] for line in range(i + 1, i + 40)})
                   for i in range(200)]
        raw = [json.dumps({**one, "path": f"root/{one['path']}"}) + "\n" for one in records]
        text = json.dumps({"version": 1, "files": records})
        path = self.scratch / "report"
        for pieces in raw, [text[at:at + 5000] for at in range(0, len(text), 5000)]:
            seen, is_enough = set(), threading.Event()

            def write():
                while not is_enough.is_set():
                    with open(path, "w") as report:
                        for piece in pieces:
                            report.write(piece)
                            report.flush()
                            time.sleep(0.0001)

            writer = threading.Thread(target=write)
            writer.start()
            try:
                for turn in range(1000):  # On a busy machine some see the same.
                    if turn >= 40 and (len(seen) > 2 or pieces is not raw):
                        break
                    status, _, err = self.run_program("merge", "-r", "root", "-o", "out", "report")
                    if status == 0:
                        found = json.loads((self.scratch / "out").read_bytes())["files"]
                        seen.add(len(found))
                        self.assertEqual([one["lines"] for one in found],
                                         [one["lines"] for one in records[:len(found)]])
                    else:
                        self.assertEqual(err, b"Parsing error for file '%s'." % bytes(path))
            finally:
                is_enough.set()
                writer.join()
            self.assertEqual(len(self.merged("report")), 200)
            # A structured report is taken as a whole, or not at all.
            self.assertTrue(len(seen) > 2 if pieces is raw else seen <= {0, 200}, seen)

    def test_a_full_device_as_output(self):
        self.marked("changed", "good")
        self.source("changed", b"")
        with open("/dev/full", "wb") as full:
            self.cleanup(stderr=full)
        after = {"changed": b"", "good": CLEAN, "good" + BACKUP: MARKED}
        self.assertEqual(self.tree(), after)
        self.marked("a")
        for command in "merge", "report", "cleanup":
            self.expect([command, "-r", "root", "-o", "/dev/full", "report"])
        self.assertEqual(self.tree(), {**after, "a": CLEAN, "a" + BACKUP: MARKED})


if __name__ == "__main__":
    unittest.main()
