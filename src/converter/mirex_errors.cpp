#include "converter/mirex_errors.h"

const char* MirexErrors::RedundantFA() {
  return "Redundant false alarm marker '//-V%1%'. The analyzer warning is no longer generated on "
         "this line.";
}
