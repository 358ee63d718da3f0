"""The completions in the real shells; they and the manual pages against the programs' own help."""

import os
import pathlib
import re
import subprocess
import unittest

from harness import PROGRAM, EndToEnd

PROJECT = pathlib.Path(__file__).parents[2]
TREE = pathlib.Path(PROGRAM).with_name("qln-fp-tree")

# Each shell writes every line of $TO_TRY behind "> ", and below it what it offers at its end.
BASH = r"""
for file in "$COMPLETIONS"/*.bash; do source "$file"; done
while IFS= read -r line; do
  echo "> $line"
  read -ra COMP_WORDS <<<"${line//=/ =}"
  [[ $line == *' ' ]] && COMP_WORDS+=('')
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  set -- $(complete -p "${COMP_WORDS[0]}")
  "$3"
  printf '%s\n' "${COMPREPLY[@]}"
done <<<"$TO_TRY" >"$OFFERS"
"""
FISH = r"""
for file in $COMPLETIONS/*.fish; source $file; end
for line in (string split \n $TO_TRY); echo "> $line"; complete -C $line; end >$OFFERS
"""
# Zsh completes only in its line editor: all lines are tried when that starts, on a terminal that
# script(1) makes, and what goes to the builtin that adds offers is written down.
ZSH = r"""
fpath=($COMPLETIONS $fpath)
autoload -Uz compinit && compinit -D -u
exec 3>$OFFERS
compadd() {
  local -a found
  ((${@[(I)-*[OAD]]})) || { builtin compadd -A found "$@"; print -rl -- $found >&3 }
  builtin compadd "$@"
}
zle-line-init() {
  for line in ${(f)TO_TRY}; do
    print -r -- "> $line" >&3
    BUFFER=$line CURSOR=$#line
    zle complete-word
  done
  exit 0
}
zle -N zle-line-init
"""
SHELLS = {"bash": ["bash", "--norc", "-c", BASH], "fish": ["fish", "--no-config", "-c", FISH],
          "zsh": ["script", "-qec", "zsh -d", "/dev/null"]}  # With ZSH as its .zshrc.
try:
    for end in os.openpty():
        os.close(end)
    CAN_OPEN_TERMINAL = True
except OSError:
    CAN_OPEN_TERMINAL = False


def options_of(text):
    return set(re.findall(r"(?<![\w-])--?[a-z][\w-]*", text))


def help_of(program, *arguments):
    return subprocess.check_output([program, *arguments, "--help"], text=True)


def plain(roff):
    """The text of lines with a macro each; those of two fonts write their words without blanks."""
    text = re.sub(r"\\f.", "", roff).replace("\\-", "-")
    lines = re.findall(r"^\.([A-Z]+) (.*)", text, re.MULTILINE)
    return " ".join(text if len(macro) == 1 else text.replace(" ", "") for macro, text in lines)


def words_of_help():
    """What may follow on a line that so begins, as the programs' help has it."""
    top = help_of(PROGRAM)
    # The help of a command does not list the option that prints it.
    words = {command: options_of(help_of(PROGRAM, command)) | {"-h", "--help"}
             for command in re.findall(r"^ {6}(\w+)  ", top, re.MULTILINE)}
    tree = help_of(TREE)
    # Each command with its lines, then each option with its two names.
    long_forms = dict(re.findall(r"^  (-\w), (--[\w-]+)", tree, re.MULTILINE))
    tree_words = {command: {word for option in options_of(rest)
                            for word in (option, long_forms.get(option, option))}
                  for command, rest in re.findall(r"^  (\w+) +(.*\n(?: {6}.*\n)+)", tree, re.MULTILINE)}
    of_none = set(long_forms.items()) - {(one, long_forms[one]) for one in ("-r", "-o", "-q")}
    return {
        "qln-fp-cleaner ": set(words), "qln-fp-cleaner -": options_of(top),
        **{f"qln-fp-cleaner {command} -": options for command, options in words.items()},
        "qln-fp-tree ": set(tree_words), "qln-fp-tree -": set().union(*of_none),
        **{f"qln-fp-tree {command} -": options for command, options in tree_words.items()}}


class Completions(EndToEnd):
    def expect_offers(self, wanted):
        (self.scratch / ".zshrc").write_text(ZSH)
        offers = self.scratch / "offers"
        environment = {**os.environ, "TO_TRY": "\n".join(wanted), "TERM": "vt100",
                       "COMPLETIONS": str(PROJECT / "completions"), "OFFERS": str(offers),
                       "PATH": f"{pathlib.Path(PROGRAM).parent}:{os.environ['PATH']}",
                       "HOME": str(self.scratch), "ZDOTDIR": str(self.scratch),
                       "LC_ALL": "C.UTF-8"}
        for shell, command in SHELLS.items():
            if shell == "zsh" and not CAN_OPEN_TERMINAL:
                self.skipTest("zsh completes on a pseudo-terminal, and there is none")
            done = subprocess.run(command, env=environment, cwd=self.root, timeout=60,
                                  stdin=subprocess.DEVNULL, capture_output=True)
            self.assertEqual((done.returncode, done.stderr), (0, b""), shell)
            blocks = [block.split("\n") for block in offers.read_text().split("> ")[1:]]
            # Fish adds descriptions; a joined value may come with its option.
            self.assertEqual({line: {re.sub(r"^--[\w-]+=|/?(\t.*)?$", "", one) for one in found
                                     if one} for line, *found in blocks}, wanted, shell)

    def test_every_command_and_option_of_the_help_and_no_other(self):
        self.expect_offers(words_of_help())

    def test_files_and_directories(self):
        for name in "one.json", "two.txt", "sub/three.json":
            self.source(name, b"")
        wanted = {
            ("merge ", "report -r sub ", "cleanup -o out "): {"one.json", "sub"},
            ("merge -o ", "report --output-file "): {"one.json", "two.txt", "sub"},
            ("merge -r ", "cleanup --sourcetree-root=", "report one.json -r s"): {"sub"}}
        of_tree = {("check ", "sarif ", "preview -r sub ", "select "): {"one.json", "sub"},
                   ("explain ", "select -o ", "page --output-file="): {"one.json", "two.txt", "sub"},
                   ("check -r ", "keep -r s", "undo --sourcetree-root="): {"sub"}}
        self.expect_offers({f"qln-fp-{program} {line}": found
                            for program, table in (("cleaner", wanted), ("tree", of_tree))
                            for lines, found in table.items() for line in lines})

    def test_manual_pages_name_every_command_and_option(self):
        for program in "qln-fp-cleaner", "qln-fp-tree":
            words = {line + word if line.endswith(" ") else word
                     for line, found in words_of_help().items() if line.startswith(program)
                     for word in found}
            text = (PROJECT / f"man/{program}.1").read_text().replace("\\-", "-")
            missing = {word for word in words if not re.search(rf"(?<![\w-]){word}(?![\w-])", text)}
            self.assertEqual(missing, set(), program)

    def test_manual_page_has_the_synopses_of_the_help(self):
        page = (PROJECT / "man/qln-fp-tree.1").read_text()
        (section,) = re.findall(r"^\.SH SYNOPSIS\n(.*?)^\.SH", page, re.MULTILINE | re.DOTALL)
        self.assertEqual(
            {plain(form) for form in section.split(".br\n")},
            {" ".join(f"qln-fp-tree {form}".split())
             for form in re.findall(r"^  (\w.*(?:\n {10}.*)*)", help_of(TREE), re.MULTILINE)})


if __name__ == "__main__":
    unittest.main()
