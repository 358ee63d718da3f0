// The commands' arguments and what is kept of them.
#pragma once

#include <args.hxx>

// The parser calls the handler of the command that it meets on the line, and again, without a line
// to parse, to describe the command in a help. Each declares its arguments, parses, and stores them
// in faCleaner::GetConfiguration(); the mode is not theirs to set. The parser's exceptions pass
// through, and then nothing is stored.

void cleanup(args::Subparser& parser);
void merge(args::Subparser& parser);
void report(args::Subparser& parser);
