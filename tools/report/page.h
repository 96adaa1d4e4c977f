#pragma once

#include <string>

#include "tools/report/report.h"

/// The report as one HTML page that needs nothing else: no script, no network, pictures and style
/// within. The same report gives the same bytes.
std::string htmlPage(const Report& report);
