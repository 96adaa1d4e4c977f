#pragma once

#include <vector>

#include "tools/batch/entry.h"
#include "tools/batch/journal.h"
#include "tools/batch/progress.h"

/// What a batch does besides running its entries.
struct PoolSettings {
  unsigned workers = 1;
  std::vector<std::string> command; ///< starts a worker, followed by its scratch folder
  bool failFast = false;            ///< start no further entry once one has failed
};

/// Runs all entries that the journal does not know, several at a time in worker processes, and adds
/// them to it.
///
/// \param results  out: one per entry, in their order; those not run have an empty status
/// \return false when it stopped early, because of `failFast` or of SIGINT or SIGTERM
/// Throws ToolError(cannotWrite) when the journal or a scratch folder cannot be written.
bool runAll(const std::vector<Entry>& entries, const PoolSettings& pool, Journal& journal,
            Progress& progress, std::vector<EntryResult>& results);

/// The signal that stopped the batch, or 0.
int stoppedBySignal();
