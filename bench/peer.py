"""The same work in plain Python: what a team would write for itself."""

import hashlib
import json
import os
import sys


def merge(root, reports):
    merged = {}
    for report in reports:
        with open(report, "rb") as stream:
            text = stream.read()
        if text.startswith(b'{"files"') or text.startswith(b'{\n  "files"'):
            named = {one["path"][4:]: one for one in json.loads(text)["files"]}
            if not merged:
                merged = named
            else:
                merged = {path: one for path, one in merged.items() if path in named}
                for path, one in merged.items():
                    intersect(one, named[path])
            continue
        for line in text.splitlines():
            one = json.loads(line)
            path = os.path.relpath(one["path"], root)
            stored = merged.setdefault(path, one)
            if stored is not one:
                if stored["hash"] != one["hash"]:
                    sys.exit("hash mismatch: " + path)
                intersect(stored, one)
    return {path: one for path, one in sorted(merged.items()) if one["lines"]}


def intersect(stored, other):
    known = {line["line"]: line for line in other["lines"]}
    stored["lines"] = [line for line in stored["lines"] if known.get(line["line"]) == line]


def write_merged(merged, output):
    files = [{"hash": one["hash"], "lines": one["lines"], "path": "|?|/" + path}
             for path, one in merged.items()]
    with open(output, "w") as stream:
        json.dump({"files": files, "version": 1}, stream, indent=2)


def write_warnings(merged, output):
    warnings = [{"code": "V%03d" % marker["code"], "cwe": 0, "falseAlarm": False,
                 "favorite": False, "level": 1,
                 "message": "Redundant false alarm marker '//-V%d'. The analyzer warning is no "
                            "longer generated on this line." % marker["code"],
                 "positions": [{"endLine": line["line"], "file": "|?|/" + path,
                                "line": line["line"],
                                "navigation": {"columns": 0, "currentLine": 0, "nextLine": 0,
                                               "previousLine": 0}}],
                 "projects": [], "sastId": ""}
                for path, one in merged.items() for line in one["lines"]
                for marker in line["markers"]]
    with open(output, "w") as stream:
        json.dump({"version": 3, "warnings": warnings}, stream, indent=2)
        stream.write("\n")


def clean(root, merged):
    for path, one in merged.items():
        name = os.path.join(root, path)
        with open(name, "rb") as stream:
            content = stream.read()
        if hashlib.sha1(content).hexdigest() != one["hash"]:
            print("hash mismatch: " + path, file=sys.stderr)
            continue
        lines = content.split(b"\n")
        for line in one["lines"]:
            text = lines[line["line"] - 1]
            for marker in reversed(line["markers"]):
                offsets = marker["offsets"]
                text = text[:offsets["begin"]] + text[offsets["end"]:]
            lines[line["line"] - 1] = text
        os.rename(name, name + ".bak")
        with open(name, "wb") as stream:
            stream.write(b"\n".join(lines))


def main(command, root, output, *reports):
    merged = merge(root, reports)
    if command == "merge":
        write_merged(merged, output)
    elif command == "report":
        write_warnings(merged, output)
    else:
        clean(root, merged)


main(*sys.argv[1:])
