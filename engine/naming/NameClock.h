// NameClock: the local time that date and time tokens of a name show.
#pragma once

#include <QDateTime>

#include <functional>

namespace folivex {

/// Asked at most once for each name, and only when the name shows a date or a time.
using NameClock = std::function<QDateTime()>;

} // namespace folivex
