"""The workloads: trees of marked sources and their reports, all in a memory file system."""

import hashlib
import json
import pathlib
import random

INSTALLED = ("/usr/include", "/usr/lib/llvm-19/include/c++", "/usr/src/googletest")
SEED = 20240229


def compact(value):
    """JSON as the analyzer core writes it."""
    return json.dumps(value, separators=(",", ":"))


def marker(code, begin):
    end = begin + len(f"//-V{code}")
    return {"code": code, "columns": {"begin": begin + 1, "end": end + 1},
            "offsets": {"begin": begin, "end": end}}


def record(path, digest, lines):
    return {"path": str(path), "hash": digest, "lines": lines}


def ends_with_code(line):
    """By its look, as the lines do that people mark."""
    return line.endswith((b";", b"{", b"}", b",", b")"))


def plant(content, chance, rate):
    """The content with a marker at the end of some lines of code, and its records' lines."""
    out, lines = [], []
    for number, line in enumerate(content.split(b"\n"), 1):
        if ends_with_code(line) and chance.random() < rate:
            code = chance.randrange(100, 5000)
            line += b"  "
            lines.append({"line": number, "markers": [marker(code, len(line))]})
            line += b"//-V%d" % code
        out.append(line)
    return b"\n".join(out), lines


class Tree:
    """Sources below `root`, and one record for each."""

    def __init__(self, root):
        self.root = pathlib.Path(root)
        self.records = []
        self.markers = 0

    def add(self, name, content, lines):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        self.records.append(record(path, hashlib.sha1(content).hexdigest(), lines))
        self.markers += sum(len(line["markers"]) for line in lines)

    def raw_reports(self, directory, count):
        """The same records in every report, so that every marker goes."""
        text = "".join(compact(one) + "\n" for one in self.records)
        paths = [pathlib.Path(directory) / f"raw{number}.json" for number in range(count)]
        for path in paths:
            path.write_text(text)
        return paths


def real_files(count):
    """Different C++ headers of this machine, repeated from the front if there are too few. In a raw
    string, what looks like code is none."""
    found = {path.read_bytes() for root in INSTALLED for path in pathlib.Path(root).rglob("*")
             if path.suffix in ("", ".h", ".hpp", ".hxx", ".cc") and path.is_file()}
    texts = sorted(text for text in found if text and b"//-V" not in text and b'R"' not in text)
    random.Random(SEED).shuffle(texts)
    return [texts[index % len(texts)] for index in range(count)]


def headers(root, count=4000, markers=34000):
    tree, chance = Tree(root), random.Random(SEED)
    contents = real_files(count)
    rate = markers / sum(ends_with_code(line) for content in contents for line in content.split(b"\n"))
    for index, content in enumerate(contents):
        tree.add(f"module{index % 40}/header{index // 40}.h", *plant(content, chance, rate))
    return tree


def huge_files(root, count=4, size=128 << 20):
    tree, chance = Tree(root), random.Random(SEED)
    text = b"\n".join(content for content in real_files(600))[:4 << 20]
    marked, lines = plant(text, chance, 0.004)
    number = marked.count(b"\n")
    repeats = size // len(marked)
    for index in range(count):
        all_lines = [{"line": line["line"] + repeat * number, "markers": line["markers"]}
                     for repeat in range(repeats) for line in lines if line["line"] <= number]
        piece = marked[:marked.rindex(b"\n") + 1]
        tree.add(f"huge{index}.cpp", piece * repeats, all_lines)
    return tree


def small_files(root, count=20000, size=400):
    tree = Tree(root)
    for index in range(count):
        first = b"int value%d = %d;  " % (index, index)
        content = first + b"//-V501\n" + b"// filler of a small file\n" * (size // 26)
        tree.add(f"dir{index % 100}/file{index}.cpp", content,
                 [{"line": 1, "markers": [marker(501, len(first))]}])
    return tree


def many_lines(root, count=200000):
    tree = Tree(root)
    text = [b"value[%d] = %d;  " % (index, index) for index in range(count)]
    tree.add("table.cpp", b"".join(line + b"//-V501\n" for line in text),
             [{"line": number, "markers": [marker(501, len(line))]}
              for number, line in enumerate(text, 1)])
    return tree


def raw_reports(directory, root, reports, files, lines, repeats=1):
    """Reports alone, of sources that need not exist: `repeats` records a file in each, as headers
    have that are compiled again and again; one in fifty of the repeated differs."""
    paths, chance = [], random.Random(SEED)
    names = [f"{root}/src/module{index % 50}/sub{index % 7}/file{index}.cpp"
             for index in range(files)]
    every = [[{"line": 7 * number + index % 5, "markers": [marker(500 + number % 400, 30)]}
              for number in range(1, lines + 1)] for index in range(50)]

    def text(index):
        kept = [line for line in every[index % 50] if chance.random() < 0.97]
        digest = hashlib.sha1(names[index].encode()).hexdigest()
        return compact(record(names[index], digest, kept)) + "\n"

    for number in range(reports):
        path = pathlib.Path(directory) / f"raw{number}.json"
        usual = [text(index) for index in range(files)]
        with open(path, "w") as out:
            for repeat in range(repeats):
                out.writelines(text(index) if repeat and chance.random() < 0.02 else usual[index]
                               for index in range(files))
        paths.append(path)
    return paths
