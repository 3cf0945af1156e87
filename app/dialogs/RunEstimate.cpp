#include "app/dialogs/RunEstimate.h"

namespace folivex {

namespace {

constexpr qint64 leastElapsedMs = 2000;
constexpr int leastPages = 10;

} // namespace

QString timeLeftText(int page, int pageCount, qint64 elapsedMs) {
  const int done = page - 1;
  if (done < leastPages || pageCount < page || elapsedMs < leastElapsedMs) {
    return {};
  }
  const qint64 seconds = elapsedMs * (pageCount - done) / done / 1000;
  if (seconds < 10) {
    return QStringLiteral("a few seconds left");
  }
  if (seconds < 55) {
    return QStringLiteral("about %1 seconds left").arg((seconds + 5) / 10 * 10);
  }
  const qint64 minutes = (seconds + 30) / 60;
  if (minutes < 60) {
    return minutes <= 1 ? QStringLiteral("about a minute left")
                        : QStringLiteral("about %1 minutes left").arg(minutes);
  }
  const qint64 hours = (minutes + 30) / 60;
  return hours == 1 ? QStringLiteral("about an hour left")
                    : QStringLiteral("about %1 hours left").arg(hours);
}

} // namespace folivex
