// RunEstimate: how long a run will still take.
#pragma once

#include <QString>

namespace folivex {

/// In plain words, rounded as one would say it: "about 2 minutes left". Empty while too little has
/// been done to tell. `page` counts from 1 and is being worked on.
QString timeLeftText(int page, int pageCount, qint64 elapsedMs);

} // namespace folivex
