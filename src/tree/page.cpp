#include "tree/page.h"

#include "tree/output_file.h"
#include "tree/page_data.h"
#include "tree/page_frame.h"
#include "tree/reports.h"

namespace tree {

void Page(Options const& options, Console& console) {
  const Reports reports = ReadReports(options.reports, options.root);
  OutputFile file(options.output);
  file.Write(PageFrame::Head());
  WritePageData(file, reports, options, console);
  file.Write(PageFrame::Tail());
  file.Finish();
}

}  // namespace tree
