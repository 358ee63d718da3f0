// The commands of qln-fp-tree, each in a file of its own.
//
// All are for the main thread, and print and complain through the console. What a command cannot go
// on from leaves it as a std::exception whose text is for the user.
#pragma once

#include "companion/commands/options.h"
#include "companion/output/console.h"

namespace companion {

/// What each of them is.
using Command = void(Options const& options, Console& console);

/// Complains of everything that would go wrong in a cleanup, or would make it do the wrong thing;
/// prints what was looked at, and with options.list the sources that some report does not name.
void Check(Options const& options, Console& console);

/// Does what Check does, and, if there is nothing to complain of, what a cleanup does; then looks
/// at each result, and with options.keep does what Keep does, unless a file was refused. Goes on
/// where an interrupted run of its own left off.
void Clean(Options const& options, Console& console);

/// Prints, for each line of options.source that some report lists, or for the one line that it
/// names, whether its markers go, what each report says of them, and the line itself. Complains
/// when no report names the file.
void Explain(Options const& options, Console& console);

/// Gives every cleaned source below options.root what its backup has beside its content, has the
/// file systems written to the disk, and only then deletes the backups. Complains of a source that
/// is not its backup less some markers, and leaves it.
void Keep(Options const& options, Console& console);

/// Prints a line for each marker that goes, in the form of a compiler's warnings; with
/// options.stays for each that stays, and because of which report. Complains of sources that are
/// not as they were analyzed, whose lines may be others.
void List(Options const& options, Console& console);

/// Writes the page that shows what a cleanup with these reports would do to options.output, as one
/// HTML file. A source that is missing or has changed is no failure, and shown as such.
void Page(Options const& options, Console& console);

/// Prints what a cleanup would change, as a patch; or, with options.stat, how much. Touches
/// nothing. Complains of the sources that a cleanup would refuse, and of those that no patch can
/// name. With options.exitCode checks first, as Check does, and has the exit status tell whether
/// something would change.
void Preview(Options const& options, Console& console);

/// Writes the raw reports of another machine, on which the root was options.from, to options.output
/// as one raw report of this machine; or complains of every source that is not here as it was
/// analyzed there, its line ends aside, and writes nothing.
void Relocate(Options const& options, Console& console);

/// Prints the warnings report that options.reports names as SARIF 2.1.0.
void Sarif(Options const& options, Console& console);

/// Prints what the reports agree on as SARIF 2.1.0, with a fix for each marker that is safe to take
/// out. Complains as List does.
void SarifOfReports(Options const& options, Console& console);

/// Writes what the reports agree on, cut to options.codes and options.paths less options.without,
/// as a structured report to options.output.
void Select(Options const& options, Console& console);

/// Prints, for each backup below options.root, whether its source is cleaned, broken off, or has
/// changed since. Touches nothing. Complains of what cannot be looked at.
void Status(Options const& options, Console& console);

/// Renames every backup below options.root to its source, if that is the backup less some markers,
/// or a beginning of such a text, or gone. Complains of all others, and leaves them.
void Undo(Options const& options, Console& console);

}  // namespace companion
