// What the tables of commands and options say, for people and for shells.
#pragma once

#include <string>
#include <string_view>

namespace companion {

/// The help, in lines of at most 80 columns.
[[nodiscard]] std::string Usage();

/// The help of the command, or of both of one name.
[[nodiscard]] std::string UsageOf(std::string_view command);

/// What may stand on a command line, for the completions of all shells: a line for each command,
/// and for each option of each. It has, with `|` between them: the command behind which this may
/// stand, empty for a command and what stands in its place; `*` for what may be given several
/// times; its forms; what follows it, as the help calls that; and a sentence of help.
[[nodiscard]] std::string Completions();

}  // namespace companion
