"""Runs the real program in a scratch directory of each test's own."""

import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["QLN_FP_CLEANER"]
BACKUP = "temp_qln_facleaner"
# Root has to give up its right to pass over permissions.
UNPRIVILEGED = ["setpriv", "--bounding-set", "-dac_override,-dac_read_search"]


def golden(name):
    """The bytes of a file in tests/data."""
    return (pathlib.Path(__file__).parents[1] / "data" / name).read_bytes()


def lines_of(markers):
    """The lines of a record from {line: [(code, begin, end), ...]}; code None leaves it out."""
    def marker(code, begin, end):
        fields = {"columns": {"begin": begin + 1, "end": end + 1},
                  "offsets": {"begin": begin, "end": end}}
        return fields if code is None else {"code": code, **fields}
    return [{"line": line, "markers": [marker(*values) for values in on_line]}
            for line, on_line in markers.items()]


def file_system_error(call, reason, *paths):
    """What the line of a failed call matches, in the words of either C++ library."""
    return (f"^filesystem error: .*{call.replace('_', '.')}.*: {reason} " +
            " ".join(rf'\["?{re.escape(str(path))}"?\]' for path in paths) + "$")


def record(path, content, markers):
    return {"path": str(path), "hash": hashlib.sha1(content).hexdigest(),
            "lines": lines_of(markers)}


class EndToEnd(unittest.TestCase):
    def setUp(self):
        self.scratch = pathlib.Path(tempfile.mkdtemp(prefix="qln_e2e_")).resolve()
        self.addCleanup(shutil.rmtree, self.scratch)
        self.root = self.scratch / "root"
        self.temp = self.scratch / "tmp"
        self.root.mkdir()
        self.temp.mkdir()

    def run_program(self, *arguments, **options):
        """Status, standard output and standard error of a run in the scratch directory."""
        done = subprocess.run([PROGRAM, *arguments], capture_output=True, cwd=self.scratch,
                              env={**os.environ, "TMPDIR": str(self.temp)}, timeout=300, **options)
        return done.returncode, done.stdout, done.stderr

    def start_program(self, *arguments):
        """Starts a run that does not outlive the test."""
        run = subprocess.Popen([PROGRAM, *arguments], stderr=subprocess.PIPE, cwd=self.scratch,
                               env={**os.environ, "TMPDIR": str(self.temp)})
        self.addCleanup(run.wait)
        self.addCleanup(run.kill)
        return run

    def expect(self, arguments, status=0, out=b"", err=b""):
        self.assertEqual(self.run_program(*arguments), (status, out, err), arguments)

    def expect_lines(self, lines, patterns):
        self.assertEqual(len(lines), len(patterns), lines)
        for line, pattern in zip(lines, patterns):
            self.assertRegex(line, pattern)

    def source(self, name, content):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        return path

    def raw_report(self, name, *records):
        text = "".join(json.dumps(one) + "\n" for one in records)
        (self.scratch / name).write_text(text)
        return name

    def structured_report(self, name, *records):
        (self.scratch / name).write_text(json.dumps({"version": 7, "files": records}))
        return name

    def merged(self, *reports):
        """The files of the merged report, as {path: {line: [codes]}}."""
        self.expect(["merge", "-r", "root", "-o", "merged.json", *reports])
        files = json.loads((self.scratch / "merged.json").read_bytes())["files"]
        return {file["path"]: {line["line"]: [marker.get("code") for marker in line["markers"]]
                               for line in file["lines"]} for file in files}

    def tree(self):
        """Every file below the root, with its content."""
        return {str(path.relative_to(self.root)): path.read_bytes()
                for path in self.root.rglob("*") if path.is_file()}
