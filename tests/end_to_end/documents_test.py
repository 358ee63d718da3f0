"""The examples in the documents, run: what a page shows is what happens.

A fenced block with a file's name behind its language is that file. In a console block, what stands
behind "$ " is run, and all that it prints must be the lines below it.
"""

import os
import pathlib
import re
import subprocess
import unittest

from harness import PROGRAM, EndToEnd

PROJECT = pathlib.Path(__file__).parents[2]
DOCUMENTS = ["docs/formats.md"]


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


if __name__ == "__main__":
    unittest.main()
