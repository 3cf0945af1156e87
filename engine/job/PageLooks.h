// PageLooks: work on a source that writes no output.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QStringList>

namespace folivex {

class MatchObserver;
struct JobContext;

// In the setup, `fileName` is the source.

/// Why a search found nothing; see JobDriver::explainNoMatch().
QStringList nearestWords(const SplitSetup& setup, const JobContext& job);

/// Walks the matches until the observer ends it.
void showMatches(const SplitSetup& setup, const JobContext& job, MatchObserver& observer);

/// Lists the words of one page (from 1) with their positions, and opens the listing.
void listPagePositions(const SplitSetup& setup, const JobContext& job, int page);

} // namespace folivex
