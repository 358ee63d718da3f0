#include "tree/usage.h"

namespace tree {

std::string_view Usage() {
  return
      R"(Usage: qln-fp-tree COMMAND, which is one of:

  check   -r ROOT [--list] REPORT...
      Check that reports are whole, sources as analyzed, and nothing in the way
      of a cleanup. --list names the sources that some report does not name.
  explain -r ROOT FILE[:LINE] REPORT...
      Tell which markers of a source go and which stay, and what each report
      says of them.
  preview -r ROOT [--stat] REPORT...
      Print what a cleanup would change, as a patch; --stat, only how much.
  clean   -r ROOT [--keep] REPORT...
      Check, clean if all is well, and look at each result; --keep, then keep.
  undo    -r ROOT
      Put every backup back in the place of its source.
  keep    -r ROOT
      Give every cleaned source the permissions and owner of its backup, and
      delete the backup.
  select  -r ROOT -o FILE [--code CODE,...] [--path GLOB] [--without GLOB]
          REPORT...
      Write what the reports agree on, cut to some codes (V501, V600-V699) and
      to some paths, as a report for a cleanup.
  page    -r ROOT -o FILE.html REPORT...
      Write a page that shows what goes and what stays, and why; for a browser.
  sarif   WARNINGS.json
      Print a warnings report as SARIF 2.1.0.

  -r, --sourcetree-root ROOT  The project's root.
  -o, --output-file FILE      The file to write.
  -h, --help                  Display this help.
  -v, --version               Show the version, which is qln-fp-cleaner's.

undo and keep leave a source that is not its backup less some markers. preview
refuses names that hold control characters, such as line ends.
Exit status: 0 all is well; 1 something failed or was refused; 2 wrong usage.
)";
}

}  // namespace tree
