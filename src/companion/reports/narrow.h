// Reports cut down to what was asked for.
#pragma once

#include "companion/reports/reports.h"
#include "companion/selection/filters.h"

namespace companion {

/// Leaves only the sources and codes that the filters take, and deletes the files that are left
/// with no lines. Throws std::runtime_error for a filter that matches nothing.
void Narrow(Files& agreed, Filters filters);

/// Does so with what is agreed, and takes the other sources out of the reports. Their lines stay
/// whole: whether reports agree on a line shows only in all its markers. A filter that matches
/// nothing may be one for a report that could not be read: that is passed over without `areWhole`.
void Narrow(Reports& reports, Filters filters, bool areWhole = true);

}  // namespace companion
