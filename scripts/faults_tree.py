"""A small tree with a source in every state, the commands that are run over it, what each has to
make of it, and what neighbours do to it meanwhile."""

import hashlib
import json
import os
import pathlib
import re
import shutil
import sys

PROJECT = pathlib.Path(__file__).resolve().parents[1]
os.environ.setdefault("QLN_FP_CLEANER", str(PROJECT / "build/release/qln-fp-cleaner"))
sys.path.insert(0, str(PROJECT / "tests/end_to_end"))
from harness import BACKUP, PROGRAM, record  # noqa: E402

TOOL = str(pathlib.Path(PROGRAM).with_name("qln-fp-tree"))
COPIES = "tmp/qln_fp_cleaner"  # Where a cleanup has its temporary files.
EDIT, OTHER_BACKUP = b"//-V9 saved by a neighbour\n", b"somebody's own text under a backup's name\n"


def text(name, between=1, end=b"\n"):
    return (b"int %s; //-V501" % name + end + (b"x" * 98 + end) * between + b"int z; //-V501" + end)


BEFORE = {"plain.cpp": text(b"plain"), "dos.cpp": text(b"dos", end=b"\r\n"),
          "large.cpp": text(b"large", 1600),  # Two windows of 128 KiB.
          "a/same.cpp": text(b"first"), "b/same.cpp": text(b"second", 3),
          "hard1.cpp": text(b"hard"), "hard2.cpp": text(b"hard"), "locked/in.cpp": text(b"in"),
          "done.cpp": text(b"done"), "wide.cpp": text(b"wide", 1600), "broken.cpp": text(b"broken"),
          "gone.cpp": text(b"gone"), "changed.cpp": text(b"changed"), "kept.cpp": text(b"kept"),
          "twin1.cpp": text(b"twin"), "twin2.cpp": text(b"twin"), "locked/done.cpp": text(b"locked")}
CLEAN = {name: content.replace(b"//-V501", b"") for name, content in BEFORE.items()}
UNLISTED = {"root/unlisted.cpp": text(b"unlisted")}
LINKED = {"hard2.cpp": "hard1.cpp", "twin2.cpp": "twin1.cpp"}
# What stands there besides CLEAN and a backup, for the sources at which a cleanup has been already.
LEFT = {name: (CLEAN[name], BEFORE[name]) for name in
        ("done.cpp", "wide.cpp", "twin1.cpp", "twin2.cpp", "locked/done.cpp")}
LEFT |= {"broken.cpp": (CLEAN["broken.cpp"][:25], BEFORE["broken.cpp"]),
         "gone.cpp": (None, BEFORE["gone.cpp"]), "kept.cpp": (CLEAN["kept.cpp"], None),
         "changed.cpp": (b"changed\n" + CLEAN["changed.cpp"], BEFORE["changed.cpp"])}
BEGIN = {name: LEFT.get(name, (BEFORE[name], None)) for name in BEFORE}
ATTRIBUTE, MODE = "user.origin", 0o640  # Of the backup done.cpp's.

MAKE = "plain.cpp large.cpp a/same.cpp b/same.cpp hard1.cpp hard2.cpp done.cpp broken.cpp gone.cpp kept.cpp"
UNMAKE = "plain.cpp done.cpp wide.cpp broken.cpp gone.cpp changed.cpp twin1.cpp twin2.cpp locked/done.cpp"
LOOK = "plain.cpp done.cpp gone.cpp"
REPORTS = ["raw", "structured"]
# The words of each command, and the sources that its tree has.
COMMANDS = {name: ([PROGRAM if name == "cleanup" else TOOL, *words.split()], sources.split())
            for name, words, sources in (
    ("cleanup", "cleanup -r root -o warnings raw structured",
     "dos.cpp changed.cpp locked/in.cpp " + MAKE),
    ("clean", "clean -r root raw structured", MAKE),
    ("clean --keep", "clean --keep -r root raw structured", MAKE),
    ("undo", "undo -r root", UNMAKE), ("keep", "keep -r root", UNMAKE),
    ("check", "check --list -r root raw structured", LOOK),
    ("explain", "explain -r root plain.cpp raw structured", LOOK),
    ("preview", "preview -r root raw structured", LOOK),
    ("select", "select -r root -o written raw structured", LOOK),
    ("list", "list -r root raw structured", LOOK),
    ("relocate", "relocate -r root --from SCRATCH/root -o written raw", "plain.cpp a/same.cpp"),
    ("page", "page -r root -o written raw structured", LOOK),
    ("sarif", "sarif given", "plain.cpp"))}
# Who else runs in the same tree. Those that only look meet one that changes all.
RIVALS = {"cleanup": ["cleanup", "undo"], "clean": ["clean", "undo"], "undo": ["keep", "cleanup"],
          "clean --keep": ["clean --keep", "undo"], "keep": ["undo", "cleanup"]}
WRITES = set(RIVALS)
KEEPS = {"keep", "clean --keep"}
ACTS = ["edit", "save", "half", "replace", "goes"]


def paths_of(name):
    """A source, its backup, and its temporary copy."""
    return f"root/{name}", f"root/{name}{BACKUP}", f"{COPIES}/{pathlib.Path(name).name}"


def owners_of(path, sources):
    """The sources that a path has to do with; all of them if it is nobody's own."""
    linked = {frozenset(pair) for pair in LINKED.items()}
    own = {name for name in sources if path in paths_of(name)}
    return own | {other for pair in linked if pair & own for other in pair & set(sources)} or set(sources)


def is_beginning(source, name):
    return source is None or source != CLEAN[name] and CLEAN[name].startswith(source)


def goal(command, name, state):
    """What a command is to leave of a source and its backup, if nothing goes wrong."""
    source, backup = state
    before, clean = BEFORE[name], CLEAN[name]
    if name.startswith("locked/") or command not in WRITES:
        return state
    is_half_put_back = source == before and backup is not None and is_beginning(backup, name) | (backup == clean)
    if command == "undo" and is_half_put_back:
        return before, None
    if command == "undo":
        is_put_back = backup and (source is None or backup == before and (
            source == clean or is_beginning(source, name)))
        return (backup, None) if is_put_back else state
    if command != "keep" and ((source, backup) == (before, None) or is_half_put_back or command != "cleanup" and
                              backup == before and is_beginning(source, name)):
        state = clean, before
    return (clean, None) if command in KEEPS and state == (clean, before) else state


class Tree:
    """A scratch directory with the tree of one command."""

    def __init__(self, scratch, command):
        self.scratch, self.command = scratch, command
        words, self.sources = COMMANDS[command]
        self.words = [word.replace("SCRATCH", str(scratch)) for word in words]
        self.environment = {**os.environ, "TMPDIR": str(scratch / "tmp"), "LC_ALL": "C"}

    def write(self, files):
        for name, content in files.items():
            (self.scratch / name).parent.mkdir(parents=True, exist_ok=True)
            (self.scratch / name).write_bytes(content)

    def reset(self):
        for path in self.scratch.glob("root/locked"):
            path.chmod(0o755)
        shutil.rmtree(self.scratch, ignore_errors=True)
        records = [record(name, BEFORE[name], {
            1: [(501, BEFORE[name].index(b"//"), BEFORE[name].index(b"//") + 7)],
            BEFORE[name].count(b"\n"): [(501, 7, 14)]})
            for name in self.sources if name != "locked/done.cpp"]
        raw = [{**one, "path": f"{self.scratch}/root/{one['path']}"} for one in records]
        given = {"code": "V501", "message": "m", "positions": [{"file": "a", "line": 1, "endLine": 1}]}
        self.write({"raw": "".join(json.dumps(one) + "\n" for one in raw).encode(), **UNLISTED,
                    "structured": json.dumps({"version": 1, "files": records}).encode(),
                    "given": json.dumps({"version": 3, "warnings": [given]}).encode(),
                    "written": b"older\n", "stdout": b"", "stderr": b""})
        (self.scratch / "tmp").mkdir()
        for name in self.sources:
            for path, content in zip(paths_of(name), BEGIN[name]):
                if content is not None and name in LINKED:
                    (self.scratch / path).hardlink_to(self.scratch / path.replace(name, LINKED[name]))
                elif content is not None:
                    self.write({path: content})
        if "done.cpp" in self.sources:
            backup = self.scratch / paths_of("done.cpp")[1]
            backup.chmod(MODE)
            self.set_attribute(backup)
        for path in self.scratch.glob("root/locked"):
            path.chmod(0o555)
        self.editor = None
        self.precious = {(name, text) for name in self.sources for text in
                         {BEGIN[name][0] if name in ("changed.cpp", "kept.cpp") else None,
                          BEFORE[name] if name != "kept.cpp" else None} if text is not None}
        self.saved = set()  # Texts of neighbours.
        self.acted = set()  # Sources that neighbours were at.

    def set_attribute(self, path):
        try:
            os.setxattr(path, ATTRIBUTE, b"here")
        except OSError:  # Not every file system has them.
            pass

    def attributes(self, name):
        """The permissions, and what else the backup of done.cpp has."""
        path = self.scratch / paths_of(name)[0]
        return path.stat().st_mode & 0o7777, {key: os.getxattr(path, key) for key in os.listxattr(path)}

    def look(self):
        """Takes in what a run left and said."""
        self.files = {str(path.relative_to(self.scratch)): path.read_bytes()
                      for path in self.scratch.rglob("*") if path.is_file()}
        prefix = "qln-fp-tree: "
        self.lines = [line.removeprefix(prefix) for line in self.said("stderr").splitlines()]

    def said(self, stream):
        return self.files[stream].decode(errors="replace")

    def state(self, name):
        return tuple(map(self.files.get, paths_of(name)[:2]))

    def is_named(self, name, lines=None):
        """Whether a line names the source, its backup, its copy, or a folder that they are in."""
        paths = [*paths_of(name), COPIES, "tmp", str(pathlib.Path(paths_of(name)[0]).parent)]
        return any(re.search(f"(^|[^\\w.]){re.escape(path)}(?![\\w./])", line)
                   for path in paths for line in (self.lines if lines is None else lines))

    def act(self, kind, name):
        """Does what a neighbour could, at once, and notes what now must not be lost."""
        if kind == "report":  # One that does not list the first source any more.
            text = (self.scratch / name).read_text()
            first = self.sources[0].replace(".cpp", "")
            (self.scratch / name).write_text(text.replace(f'{first}.cpp"', f'{first}.gone"'))
            return
        source, backup, _ = (self.scratch / path for path in paths_of(name))
        clean = CLEAN[name]
        if kind in ("edit", "half"):
            kind = self.write_in_place(kind, source, clean)
        elif not os.access(source.parent, os.W_OK):
            kind = "may not"
        elif kind == "save":
            self.replace(source, EDIT)
        elif kind == "replace" and backup.exists():
            self.replace(backup, OTHER_BACKUP)
        elif kind == "goes" and source.exists():
            source.unlink()
        self.look()
        self.precious = {(name, text) for name, text in self.precious if text in self.state(name)}
        self.saved |= {"edit": {EDIT}, "save": {EDIT}, "half": {clean[:5] + EDIT},
                       "replace": {OTHER_BACKUP} & {self.state(name)[1]}}.get(kind, set())
        self.acted |= owners_of(paths_of(name)[0], self.sources)

    def write_in_place(self, kind, source, clean):
        """Nothing is done where an editor would have to wait until the run has put the source back."""
        try:
            opened = os.open(source, os.O_WRONLY | os.O_CREAT | os.O_TRUNC | os.O_NONBLOCK, 0o666)
        except BlockingIOError:
            return "waits"
        self.editor = open(opened, "wb", buffering=0)
        if kind == "half":
            self.editor.write(clean[:5])
        else:
            self.end_acts()
        return kind

    def replace(self, path, content):
        beside = self.scratch / "beside"
        beside.write_bytes(content)
        beside.rename(path)

    def end_acts(self):
        """The editor that was in the middle of its text writes the rest."""
        if self.editor:
            self.editor.write(EDIT)
            self.editor.close()
            self.editor = None
