"""The examples in the documents, run: what a page shows is what happens.

A fenced block with a file's name behind its language is that file. In a console block, what stands
behind "$ " is run, and all that it prints must be the lines below it. README's sh blocks are made to
be copied: they are run in one shell, from the top down, and what one prints must be the text block
behind it.
"""

import os
import pathlib
import re
import subprocess
import unittest

from harness import PROGRAM, EndToEnd

PROJECT = pathlib.Path(__file__).parents[2]
DOCUMENTS = ["docs/formats.md"]
COPIED = re.compile(r"^```sh\n(.*?)^```\n(?:```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)


class Documents(EndToEnd):
    def shell(self, command):
        done = subprocess.run(["bash", "-c", command], cwd=self.root, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=60,
                              env={**os.environ, "TMPDIR": str(self.temp),
                                   "PATH": f"{self.scratch}:{os.environ['PATH']}"})
        return done.stdout.removesuffix("\n")

    def test_examples(self):
        (self.scratch / "qln-fp-cleaner").symlink_to(PROGRAM)
        for name in DOCUMENTS:
            text = (PROJECT / name).read_text()
            blocks = re.findall(r"^```(\w+) ?(.*)\n([^`]*)^```$", text, re.MULTILINE)
            self.assertEqual(len(blocks), text.count("```") / 2, name)
            for language, file, content in blocks:
                if file:
                    self.source(file, content.encode())
                for step in content.split("$ ")[1:] if language == "console" else ():
                    command, *shown = step.removesuffix("\n").split("\n")
                    self.assertEqual(self.shell(command).split("\n"), shown or [""], command)

    def test_readme(self):
        blocks = COPIED.findall((PROJECT / "README.md").read_text())
        self.assertGreater(len(blocks), 10)
        script = "".join(f"{commands}printf '\\036'\n" for commands, _ in blocks)
        # The build that is tested, in place of the release.
        for name in "qln-fp-cleaner", "qln-fp-tree":
            (self.scratch / name).symlink_to(pathlib.Path(PROGRAM).with_name(name))
        script = script.replace("$PWD/build/release", str(self.scratch))
        done = subprocess.run(["bash", "-eu"], input=script, cwd=PROJECT, text=True, timeout=300,
                              env={**os.environ, "TMPDIR": str(self.temp)},
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        printed = done.stdout.split("\036")
        self.assertEqual((done.returncode, len(printed)), (0, len(blocks) + 1), printed[-1])
        for (commands, shown), text in zip(blocks, printed):
            self.assertEqual(text, shown, commands)


if __name__ == "__main__":
    unittest.main()
