#include "companion/commands/commands.h"
#include "companion/formats/sarif_log.h"

namespace companion {

void Sarif(Options const& options, Console& console) {
  WriteSarif(Warnings(options.reports.front()), console.Out());
}

}  // namespace companion
