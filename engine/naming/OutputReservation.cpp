#include "engine/naming/OutputReservation.h"

#include "platform/Paths.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace folivex {

namespace {

constexpr qsizetype endingLength = 4; // ".pdf"
constexpr int firstPart = 2;          // the file without a number is the first

QString partPath(const QString& path, int part) {
  return path.chopped(endingLength) +
         QStringLiteral("_part%1.pdf").arg(part, 3, 10, QLatin1Char('0'));
}

} // namespace

bool DiskOutputPlaces::exists(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

bool DiskOutputPlaces::isProtected(const QString& path) {
  return std::any_of(m_protected.begin(), m_protected.end(),
                     [&path](const QString& file) { return platform::isSameFile(file, path); });
}

OutputReservation::OutputReservation(WhenTaken whenTaken, OutputPlaces& places, OutputList& list,
                                     FileSystemRules rules, const PagePart& part)
    : m_whenTaken(whenTaken), m_places(places), m_list(list), m_rules(rules), m_part(part) {}

QString OutputReservation::reserve(const QString& path, int firstPage, int lastPage,
                                   const Confirm& confirm) {
  QString target = placeFor(path);
  const ReservedOutput output{target, firstPage, lastPage};
  if (confirm && !confirm(output)) {
    return {};
  }
  hold(output);
  return target;
}

void OutputReservation::reserveAs(const ReservedOutput& planned) {
  const QString name = m_rules.comparable(planned.path);
  const bool isPromised = !m_whenTaken.overwrite && m_promised.contains(name);
  m_promised.insert(name);
  const bool isOurs = m_part.contains(planned.firstPage);
  if (isOurs &&
      (isPromised || (m_places.exists(planned.path) && m_places.isProtected(planned.path)))) {
    m_list.occupied(planned);
  } else {
    hold(planned);
  }
}

void OutputReservation::hold(const ReservedOutput& output) {
  if (!m_whenTaken.overwrite) {
    handOn(output);
    return;
  }
  m_pending.push_back(output);
  // What another run writes cannot be replaced later: all that share a name must be known.
  if (m_pending.size() >= pendingLimit && m_part.isAll()) {
    flush();
  }
}

void OutputReservation::handOn(const ReservedOutput& output) {
  if (!m_part.contains(output.firstPage)) {
    m_list.elsewhere(output);
  } else if (!m_part.isAll() && !m_whenTaken.append && !m_places.claim(output.path)) {
    m_list.occupied(output);
  } else {
    m_list.output(output);
  }
}

QString OutputReservation::placeFor(const QString& path) {
  if (m_whenTaken.overwrite || m_whenTaken.append) {
    return unprotectedPath(path);
  }
  QString unused = unusedPath(path);
  m_promised.insert(m_rules.comparable(unused));
  return unused;
}

bool OutputReservation::take(const QString& path) {
  if (m_promised.contains(m_rules.comparable(path))) {
    return false;
  }
  return m_part.isAll() ? m_places.claim(path)
                        : !m_places.exists(path) || !m_places.isProtected(path);
}

QString OutputReservation::unusedPath(const QString& path) {
  if (take(path)) {
    return path;
  }
  // Numbers below the last one were taken when they were looked at, and stay taken.
  const QString plain = m_rules.comparable(path);
  int last = m_lastParts.value(plain, firstPart - 1);
  QString candidate;
  do {
    candidate = partPath(path, ++last);
  } while (!take(candidate));
  m_lastParts.insert(plain, last);
  return candidate;
}

QString OutputReservation::unprotectedPath(const QString& path) {
  QString candidate = path;
  for (int part = firstPart; m_places.exists(candidate) && m_places.isProtected(candidate);
       ++part) {
    candidate = partPath(path, part);
  }
  return candidate;
}

void OutputReservation::flush() {
  const std::vector<ReservedOutput> entries = std::exchange(m_pending, {});
  const std::vector<bool> replaced = replacedAmong(entries);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (!m_part.contains(entries[i].firstPage)) {
      m_list.elsewhere(entries[i]);
    } else if (replaced[i]) {
      m_list.replaced(entries[i]);
      m_list.output({QString(), -1, entries[i].lastPage});
    } else {
      m_list.output(entries[i]);
    }
  }
}

std::vector<bool>
OutputReservation::replacedAmong(const std::vector<ReservedOutput>& entries) const {
  std::vector<bool> replaced(entries.size(), false);
  if (m_whenTaken.append) {
    return replaced;
  }
  QSet<QString> later;
  later.reserve(static_cast<qsizetype>(entries.size()));
  for (std::size_t i = entries.size(); i-- > 0;) {
    const QString path = m_rules.comparable(entries[i].path);
    replaced[i] = later.contains(path);
    later.insert(path);
  }
  return replaced;
}

} // namespace folivex
