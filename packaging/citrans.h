#pragma once

/// All of the library: see the class CITRANS for a run, GDB for tables, PDB for structures.
#include "app/citrans.h" // IWYU pragma: export
