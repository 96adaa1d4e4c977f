#pragma once

#include "tools/report/fill.h"
#include "tools/report/report.h"

/// What page.html is filled with, part by part. Texts are plain; pictures and calls are markup.

/// Names, counts, concerns and remarks: what stands at the top and at the end.
void fillOpening(const Report& report, PageData& page);
/// The table of all prolines and the card of each.
void fillProlines(const Report& report, PageData& page);
/// The estimated referencing offsets and the outliers.
void fillQuality(const Report& report, PageData& page);
