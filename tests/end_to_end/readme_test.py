"""README's commands, run in one shell from the top down; what they print is what README shows."""

import os
import pathlib
import re
import subprocess
import unittest

from harness import PROGRAM, EndToEnd

PROJECT = pathlib.Path(__file__).parents[2]
COMMANDS = re.compile(r"^```sh\n(.*?)^```\n(?:```text\n(.*?)^```\n)?", re.MULTILINE | re.DOTALL)
END = "\x1e"


class Readme(EndToEnd):
    def test_commands_print_what_is_shown(self):
        blocks = COMMANDS.findall((PROJECT / "README.md").read_text())
        self.assertGreater(len(blocks), 10)
        script = "".join(f"{commands}printf '%s' '{END}'\n" for commands, _ in blocks)
        # The build that is tested, in place of the release.
        script = script.replace("$PWD/build/release", str(pathlib.Path(PROGRAM).parent))
        done = subprocess.run(["bash", "-eu"], input=script, text=True, cwd=PROJECT, timeout=300,
                              env={**os.environ, "TMPDIR": str(self.temp)},
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        printed = done.stdout.split(END)
        self.assertEqual((done.returncode, len(printed)), (0, len(blocks) + 1), printed[-1])
        for (commands, shown), text in zip(blocks, printed):
            self.assertEqual(text, shown, commands)


if __name__ == "__main__":
    unittest.main()
