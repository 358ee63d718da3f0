"""The examples in the documents, run: what a page shows is what happens.

A fenced block with a file's name behind its language is that file. In a console block, what stands
behind "$ " is run, and all that it prints must be the lines below it. The sh blocks of README and the
others are made to be copied: they are run in one shell, from the top down, and what one prints must
be the text block behind it. What README installs is an archive like that of a release, of the build
that is tested. Of the steps for hosted services, the shell lines are run.
"""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import yaml

from harness import PROGRAM, EndToEnd

PROJECT = pathlib.Path(__file__).parents[2]
RECIPES = (PROJECT / "docs/recipes.md").read_text()
# What is done to the sources and reports, and how the job that looks and the one that cleans end.
SERVED = {"true": (3, 0), "rm reports/board.json": (1, 1), "echo >>project/src/tank.cpp": (1, 1),
          "sed -i 's/\"lines\":.*/\"lines\":[]}/' reports/board.json": (0, 0)}
# Later versions of git tidy up behind a commit, in a process that a test would not wait for.
NO_TIDYING = {"GIT_CONFIG_COUNT": "1", "GIT_CONFIG_KEY_0": "maintenance.auto",
              "GIT_CONFIG_VALUE_0": "false"}
NO_MESSAGES = {"argument_groups.cpp", "argument_groups.h", "command_arguments.cpp", "command_line.cpp",
               "command_table.h", "usage.cpp", "sarif_log.cpp", "check.cpp", "votes.cpp", "patch.cpp",
               "vote_words.cpp", "line_votes_text.cpp", "shown_line.cpp", "mirex_errors.cpp", "another format"}
COPIED = re.compile(r"^```sh\n(.*?)^```\n(?:```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


def fenced(language):
    return re.findall(rf"^```{language}\n(.*?)^```$", RECIPES, re.MULTILINE | re.DOTALL)


class Documents(EndToEnd):
    def setUp(self):
        super().setUp()
        programs = self.scratch / "archive/bin"
        shutil.copytree(PROJECT / "examples", self.scratch / "archive/share/doc/qln-fp-cleaner/examples")
        programs.mkdir()
        for name in "qln-fp-cleaner", "qln-fp-tree":
            (programs / name).symlink_to(pathlib.Path(PROGRAM).with_name(name))
        (self.scratch / "home").mkdir()
        self.environment = {**os.environ, **NO_TIDYING, "TMPDIR": str(self.temp),
                            "HOME": str(self.scratch / "home"),
                            "PATH": f"{programs}:{os.environ['PATH']}"}

    def shell(self, command):
        return subprocess.run(["bash", "-c", command], cwd=self.root, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=300, env=self.environment)

    def test_examples(self):
        text = (PROJECT / "docs/formats.md").read_text()
        blocks = re.findall(r"^```(\w+) ?(.*)\n([^`]*)^```$", text, re.MULTILINE)
        self.assertEqual(len(blocks), text.count("```") / 2)
        for language, file, content in blocks:
            if file:
                self.source(file, content.encode())
            for step in content.split("$ ")[1:] if language == "console" else ():
                command, *shown = step.removesuffix("\n").split("\n")
                printed = self.shell(command).stdout.removesuffix("\n").split("\n")
                self.assertEqual(printed, shown or [""], command)

    def test_copied(self):
        version = self.shell("qln-fp-tree --version").stdout.split()[1]
        self.shell(f"name=qln-fp-cleaner-{version}-linux-amd64.tar.gz; tar -czf $name -C .. archive;"
                   "sha256sum $name >SHA256SUMS")
        for document in "README.md", "docs/start.md", "docs/recipes.md":
            blocks = COPIED.findall((PROJECT / document).read_text())
            self.assertGreater(len(blocks), 4)
            script = "".join(f"{commands}printf '\\036'\n" for commands, _ in blocks)
            done = self.shell("set -eu\n" + script)
            printed = done.stdout.split("\036")
            for (commands, shown), text in zip(blocks, printed):
                self.assertEqual(text, shown, commands)
            self.assertEqual((done.returncode, len(printed)), (0, len(blocks) + 1), printed[-1])

    def test_hosted_services(self):
        (gate,) = [block.split("END'\n")[1][:-4] for block in fenced("sh") if ">gate" in block]
        self.assertEqual(len(fenced("yaml")), 2)
        for service in map(yaml.safe_load, fenced("yaml")):
            for before, statuses in SERVED.items():
                self.root = pathlib.Path(tempfile.mkdtemp(dir=self.scratch))
                shutil.copytree(PROJECT / "examples", self.root, dirs_exist_ok=True)
                self.source("gate", gate.encode())
                self.shell(f"git init -q; git init -q --bare o; git remote add origin ./o; {before};"
                           "git add .; git -c user.name=a -c user.email=a commit -qm a")
                for job, status in zip(service.get("jobs", service).values(), statuses, strict=True):
                    lines = job.get("script") or [step.get("run", "") for step in job["steps"]]
                    done = self.shell("\n".join(["set -e", *lines]))
                    self.assertEqual(done.returncode, status, (before, lines, done.stdout))

    def test_links(self):
        texts = {file: re.sub(r"^```.*?^```$", "", file.read_text(), flags=re.MULTILINE | re.DOTALL)
                 for file in PROJECT.glob("**/*.md") if "build" not in file.parts}
        for file, text in texts.items():
            for name, heading in re.findall(r"\]\((?!http)([^)#]*)#?([^)]*)\)", text):
                target = (file.parent / name).resolve() if name else file
                self.assertTrue(target.exists(), (file, name))
                headings = re.findall(r"^#+ (.*)", texts.get(target, ""), re.MULTILINE)
                self.assertIn(heading, ["", *(re.sub(r"[^\w -]", "", one.lower()).replace(" ", "-")
                                              for one in headings)], file)

    def test_messages(self):
        told = " ".join(RECIPES.split())
        texts = [(file.name, re.sub(r'//.*|"\s*\n\s*"', "", file.read_text()))
                 for file in (PROJECT / "src").rglob("*.[ch]*") if file.suffix in (".cpp", ".h")]
        messages = [(name, words.strip(" :.\"")) for name, text in texts
                    for literal in re.findall(r'"((?:[^"\\\n]|\\.)*)"', text)
                    for words in re.split(r"\{\w*\}|\\.", literal)
                    if re.search(r"[a-z] [a-z]", words) and NO_MESSAGES.isdisjoint((name, words))]
        self.assertGreater(len(messages), 40)
        self.assertEqual([message for message in messages if message[1] not in told], [])


if __name__ == "__main__":
    unittest.main()
