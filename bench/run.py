"""Runs program and peers in turn on the same work, checks the results, prints a Markdown table.

Timings say something only beside others of the same run, so a row is the ratio of medians."""

import argparse
import datetime
import json
import os
import pathlib
import random
import shlex
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

import picture
import workloads

HERE = pathlib.Path(__file__).parent
PROGRAM = os.environ["QLN_FP_CLEANER"]
COMPANION = str(pathlib.Path(PROGRAM).with_name("qln-fp-tree"))
SHARED_PROGRAM = os.environ["QLN_FP_CLEANER_SHARED"]
EXPRESSION = "s|//-V[0-9]+||"
PEER = [sys.executable, str(HERE / "peer.py")]


class Bench:
    def __init__(self, scratch, rounds):
        self.scratch = scratch
        self.rounds = rounds
        self.rows = []
        self.temp = scratch / "tmp"
        self.temp.mkdir()

    def seconds(self, command, prepare=None):
        """Wall time of one run, which must succeed in silence."""
        if prepare:
            prepare()
        errors = self.scratch / "errors"
        with open(errors, "wb") as stream:
            begin = time.perf_counter()
            status = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=stream,
                                    env={**os.environ, "TMPDIR": str(self.temp)}).returncode
            elapsed = time.perf_counter() - begin
        if status != 0 or errors.read_bytes():
            sys.exit(f"failed: {shlex.join(map(str, command))}\n{errors.read_text()}")
        return elapsed

    def seconds_and_mebibytes(self, command, prepare):
        """The same, and its peak memory; by time(1), as a child of Python starts with Python's."""
        seconds = self.seconds(["/usr/bin/time", "-q", "-f", "%M", "-o", self.scratch / "memory",
                                *command], prepare)
        return seconds, int((self.scratch / "memory").read_text()) / 1024

    def compare(self, work, ours, peers, prepare=None, check=None):
        """A row: all commands in turn, `rounds` times; `check` looks at what each left behind."""
        commands = {"qln-fp-cleaner": ours, **peers}
        measured = {name: [] for name in commands}
        for turn in range(self.rounds):
            for name, command in commands.items():
                if turn and name == "jq":
                    continue  # Minutes, and no close race.
                measured[name].append(self.seconds(command, prepare))
                if check and not check(name):
                    sys.exit(f"{name} left something wrong: {work}")
        median = {name: statistics.median(runs) for name, runs in measured.items()}
        self.add(work, median, self.seconds_and_mebibytes(ours, prepare)[1])

    def run_once(self, work, command, check):
        """A row of a single run, for trees that do not fit into memory twice."""
        seconds, mebibytes = self.seconds_and_mebibytes(command, None)
        if not check():
            sys.exit(f"something wrong is left: {work}")
        self.add(work, {"qln-fp-cleaner": seconds}, mebibytes)

    def add(self, work, seconds, mebibytes):
        self.rows.append({"work": work, "seconds": seconds, "memory": mebibytes})
        print(self.line(self.rows[-1]), flush=True)

    @staticmethod
    def line(row):
        ours = row["seconds"]["qln-fp-cleaner"]
        peers = ", ".join(f"{name} {seconds / ours:.3g}" for name, seconds
                          in row["seconds"].items() if name != "qln-fp-cleaner")
        return f"| {row['work']} | {ours:.3f} s | {row['memory']:.0f} MiB | {peers or '-'} |"


def cleanup_row(bench, work, make, peers_of, reports=3, once=False):
    """A cleanup of a fresh copy of the tree in every run; sources must end up without markers."""
    directory = bench.scratch / "tree"
    root, pristine = directory / "root", directory / "pristine"
    tree = make(root)
    raw = tree.raw_reports(directory, reports)
    paths = [pathlib.Path(one["path"]) for one in tree.records]
    work = f"{work}: {len(paths)} files, {tree.markers} markers"
    command = [PROGRAM, "cleanup", "-r", root, *raw]

    def is_clean(*_):
        return not any(b"//-V" in path.read_bytes() for path in paths)

    def prepare():
        shutil.rmtree(root)
        shutil.copytree(pristine, root)

    if once:
        bench.run_once(work, command, is_clean)
    else:
        (directory / "list").write_bytes(b"\0".join(map(bytes, paths)))
        shutil.copytree(root, pristine)
        bench.compare(work, command, peers_of(directory, root, raw), prepare, is_clean)
    shutil.rmtree(directory)


def companion_row(bench, work, make):
    """The companion's commands beside a cleanup of the same tree with the same three reports."""
    directory = bench.scratch / "tree"
    root, pristine = directory / "root", directory / "pristine"
    tree = make(root)
    raw = tree.raw_reports(directory, 3)
    shutil.copytree(root, pristine)
    out, first = directory / "out", tree.records[0]["path"]
    cleanup = [PROGRAM, "cleanup", "-r", root, *raw]
    # undo and keep have a cleaned tree before them, all others a fresh one.
    commands = {"qln-fp-cleaner": cleanup} | {
        name: [COMPANION, name, "-r", root, *more] for name, more in {
        "check": raw, "explain": [first, *raw], "preview": raw, "clean": raw, "undo": [], "keep": [],
        "select": ["-o", out, *raw], "page": ["-o", out, *raw]}.items()}

    def prepare(name):
        shutil.rmtree(root)
        shutil.copytree(pristine, root)
        if name in ("undo", "keep"):
            bench.seconds(cleanup)

    measured = {name: [] for name in commands}
    memory = 0
    for _ in range(bench.rounds):
        for name, command in commands.items():
            prepare(name)
            seconds, mebibytes = bench.seconds_and_mebibytes(command, None)
            measured[name].append(seconds)
            memory = max(memory, mebibytes)
    bench.add(f"companion, {work}: {len(tree.records)} files, {tree.markers} markers",
              {name: statistics.median(runs) for name, runs in measured.items()}, memory)
    shutil.rmtree(directory)


def sed(directory, *_):
    return {"sed": ["xargs", "-0", "-P2", "-n", "500", "-a", directory / "list",
                    "sed", "-i.bak", "-E", EXPRESSION]}


def sed_and_perl(directory, *_):
    perl = ["-0", "-a", directory / "list", "perl", "-pi.bak", "-e", EXPRESSION]
    return {**sed(directory), "perl": ["xargs", *perl],
            "two of perl": ["xargs", "-P2", "-n", "1", *perl]}


def python(_, root, raw):
    return {"Python": [*PEER, "cleanup", root, "-", *raw]}


def sed_and_python(directory, root, raw):
    return {**sed(directory), **python(directory, root, raw)}


def same_json(*paths):
    def content(path):
        document = json.loads(path.read_bytes())
        for part in document.get("files", []):
            part["path"] = part["path"].split("/src/")[-1]  # jq leaves paths as they are.
        return sorted(document.get("files", []), key=lambda one: one["path"]) or document
    first = content(paths[0])
    return all(content(path) == first for path in paths[1:])


def merge_row(bench, work, command, reports, root, with_jq=True):
    """A merge or report; the peers must come to the same document."""
    outputs = {name: bench.scratch / f"out.{name}" for name in ("qln-fp-cleaner", "Python", "jq")}
    peers = {"Python": [*PEER, command, root, outputs["Python"], *reports]}
    if with_jq:
        script = "jq -n -f {} {} > {}".format(*(shlex.quote(str(part)) for part in (
            HERE / "merge.jq",)), shlex.join(map(str, reports)), shlex.quote(str(outputs["jq"])))
        peers["jq"] = ["sh", "-c", script]
    bench.compare(work, [PROGRAM, command, "-r", root, "-o", outputs["qln-fp-cleaner"], *reports],
                  peers)
    compared = [outputs["qln-fp-cleaner"], outputs["Python"]] + [outputs["jq"]] * with_jq
    if not same_json(*compared):
        sys.exit(f"the results differ: {work}")


def merges(bench, scale):
    directory = bench.scratch / "merges"
    directory.mkdir()
    root = directory / "root"
    raw = workloads.raw_reports(directory, root, 8, 4000 // scale, 28)
    size = sum(path.stat().st_size for path in raw) >> 20
    merge_row(bench, f"merge: 8 raw reports, {size} MiB", "merge", raw, root)
    merged = [directory / "merged0.json", directory / "merged1.json"]
    for path in merged:
        subprocess.run([PROGRAM, "merge", "-r", root, "-o", path, *raw], check=True)
    merge_row(bench, f"merge: 2 structured reports, {merged[0].stat().st_size >> 19} MiB", "merge",
              merged, root, with_jq=False)
    raw = workloads.raw_reports(directory, root, 1, 2000 // scale, 30, repeats=50)
    size = raw[0].stat().st_size >> 20
    merge_row(bench, f"merge: 1 raw report, {size} MiB", "merge", raw, root)
    merge_row(bench, f"report: 1 raw report, {size} MiB", "report", raw, root, with_jq=False)
    shutil.rmtree(directory)


def many_lines(bench, scale):
    directory = bench.scratch / "lines"
    tree = workloads.many_lines(directory / "root", 200_000 // scale)
    raw = tree.raw_reports(directory, 2)
    merge_row(bench, f"merge: 1 file, {tree.markers} marked lines", "merge", raw, tree.root, False)
    shuffled = json.loads(raw[1].read_text())
    random.Random(1).shuffle(shuffled["lines"])
    raw[1].write_text(workloads.compact(shuffled) + "\n")
    merge_row(bench, "merge: the same, one report in random order", "merge", raw, tree.root, False)
    shutil.rmtree(directory)


def start(bench):
    report = bench.scratch / "tiny.json"
    report.write_text('{"files": [], "version": 1}')
    arguments = ["merge", "-r", bench.scratch, "-o", bench.scratch / "out", report]
    rounds, bench.rounds = bench.rounds, 11 * bench.rounds  # A thousandth of a second each.
    bench.compare("start: a merge of nothing", [PROGRAM, *arguments],
                  {"linked to shared libraries": [SHARED_PROGRAM, *arguments], "true": ["true"]})
    bench.rounds = rounds


def growth(bench, scale):
    """How cost grows with files, markers and report bytes."""
    directory = bench.scratch / "growth"
    counts = [10 ** power for power in range(3, 7 if scale == 1 else 5)]
    for count in counts:
        directory.mkdir()
        [raw] = workloads.raw_reports(directory, directory, 1, count, 1)
        bench.compare(f"growth in records: {count} records, {raw.stat().st_size / 2**20:.1f} MiB",
                      [PROGRAM, "merge", "-r", directory, "-o", directory / "out", raw], {})
        shutil.rmtree(directory)
    for what, make in (("files", workloads.small_files), ("markers", workloads.many_lines)):
        for count in counts:
            cleanup_row(bench, f"growth in {what}", lambda root, n=count: make(root, n),
                        lambda *_: {}, 1, once=count == 10 ** 6)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--quick", action="store_true", help="a tenth of the work, once")
    parser.add_argument("--picture", help="write the ratios as SVG")
    options = parser.parse_args()
    scale, rounds = (10, 1) if options.quick else (1, 9)
    memory_file_system = "/dev/shm"
    print(f"{datetime.date.today()}, {os.cpu_count()} cores, median of {rounds} (jq: one run)\n")
    print("| work | time | peak memory | times as long take |")
    print("|---|---|---|---|")
    scratch = pathlib.Path(tempfile.mkdtemp(prefix="qln-bench-", dir=memory_file_system))
    try:
        bench = Bench(scratch, rounds)
        cleanup_row(bench, "cleanup, real headers",
                    lambda root: workloads.headers(root, 4000 // scale, 34000 // scale),
                    sed_and_python)
        cleanup_row(bench, "cleanup, huge files",
                    lambda root: workloads.huge_files(root, 4, (128 << 20) // scale), sed_and_perl)
        cleanup_row(bench, "cleanup, small files",
                    lambda root: workloads.small_files(root, 20000 // scale), sed, 1)
        cleanup_row(bench, "cleanup, one file",
                    lambda root: workloads.many_lines(root, 200_000 // scale), python, 2)
        companion_row(bench, "real headers",
                      lambda root: workloads.headers(root, 4000 // scale, 34000 // scale))
        rounds, bench.rounds = bench.rounds, 1
        companion_row(bench, "small files",
                      lambda root: workloads.small_files(root, 100_000 // scale))
        bench.rounds = rounds
        many_lines(bench, scale)
        merges(bench, scale)
        start(bench)
        growth(bench, scale)
    finally:
        shutil.rmtree(scratch)
    if options.picture:
        pathlib.Path(options.picture).write_text(picture.bars(bench.rows))


main()
