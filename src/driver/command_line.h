// The command line and the outcomes of parsing it.
#pragma once

/// Parses the command line into faCleaner::GetConfiguration() and returns; or prints what is to be
/// printed, the help, the version line or an error, and ends the process: with status 0 for help
/// and version, 1 for an error. Called once, on the main thread.
void ParseCommandLine(int argc, char** argv);
