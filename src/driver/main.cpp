#include <cstdlib>
#include <exception>
#include <iostream>

#include "cleaner/fa_cleaner.h"
#include "driver/command_line.h"
#include "process_statics.h"
#include "standard_descriptors.h"
#include "write_signals.h"

int main(int argc, char** argv) {
  OccupyStandardDescriptors();
  LetWritesFailWithoutSignals();
  ParseCommandLine(argc, argv);
  try {
    faCleaner::StartProgram(faCleaner::GetConfiguration(), 0);
    return EXIT_SUCCESS;
  } catch (std::exception const& error) {
    std::cerr << error.what();  // Without a newline: callers show the text as it is.
  } catch (...) {
    std::cerr << "Unrecognized error. The program is terminated.\n";
  }
  return EXIT_FAILURE;
}
