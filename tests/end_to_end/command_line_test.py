"""Every outcome of parsing: streams and status, to the byte."""

import unittest

from harness import EndToEnd, golden

VERSION = b"qln-fp-cleaner  8.00.109087.832 ARM64\n"
TOP_HELP = golden("help.txt")
HELP = {command: golden(f"help_{command}.txt") for command in ("cleanup", "merge", "report")}


class CommandLine(EndToEnd):
    def test_help_and_version(self):
        for arguments in ["-h"], ["--help"], ["-v", "-h"], ["--help", "merge"]:
            self.expect(arguments, 0, TOP_HELP)
        for command, text in HELP.items():
            self.expect([command, "--help"], 0, text)
            self.expect([command, "-h", "--bad"], 0, text)
        for arguments in (["-v"], ["--version"], ["-v", "merge"],
                          ["-v", "cleanup", "-r", "root", "a.json"]):
            self.expect(arguments, 0, VERSION)

    def test_errors_say_why_and_show_the_help_of_the_command(self):
        several = b"Some of arguments aren't specified"
        for command in HELP:
            self.expect([command], 1, HELP[command], several + b"\n")
        for arguments, message in (
                ([], b"At least one of the commands must be specified."),
                (["--"], b"At least one of the commands must be specified."),
                (["--bad"], b"Flag could not be matched: bad"),
                (["-x"], b"Flag could not be matched: 'x'"),
                (["-v", "-v"], b"Flag 'v' was passed multiple times, but is only allowed to be "
                               b"passed once"),
                (["clean"], b"Unknown command: clean"),
                (["--", "merge"], b"Passed in argument, but no positional arguments were ready to "
                                  b"receive it: merge")):
            self.expect(arguments, 1, TOP_HELP, message + b"\n")
        for arguments, message in (
                ("merge -r root a.json", b"Flag '--output-file' is required"),
                ("merge -o out a.json", b"Flag '--sourcetree-root' is required"),
                ("cleanup a.json", b"Flag '--sourcetree-root' is required"),
                ("cleanup -j", b"Flag '--sourcetree-root' is required"),
                ("report a.json", b"Flag '--output-file' is required"),
                ("report -j 4 -o out a.json", b"Flag could not be matched: 'j'"),
                ("merge -v", b"Flag could not be matched: 'v'"),
                ("merge -r", b"Flag 'r' requires an argument but received none"),
                ("cleanup -j x -r root", b"Argument 'NUM' received invalid value type 'x'"),
                ("cleanup -o a -o b", b"Flag 'o' was passed multiple times, but is only allowed to "
                                      b"be passed once")):
            command = arguments.split()[0]
            self.expect(arguments.split(), 1, HELP[command], message + b"\n")

    def test_accepted_lines(self):
        for arguments in ("cleanup -r root", "cleanup -j -r root a", "cleanup -j 8 -r root a",
                          "merge -j4 -o out -r root", "merge --output-file=out -r root -- -a",
                          "report -r gone -r root -o out a"):
            self.expect(arguments.split())

    def test_paths_are_taken_as_typed(self):
        for name in "my out.json", "it's.json", '"q".json', " {b} ", "\udcff.json":
            report = self.structured_report(name + ".in")
            for command in "merge", "report":
                self.expect([command, "-r", "root", "-o", name, report])
                self.assertIn(b'"version"', (self.scratch / name).read_bytes())
                (self.scratch / name).unlink()


if __name__ == "__main__":
    unittest.main()
