#include "engine/naming/NameList.h"

#include <QRegularExpression>

namespace folivex {

namespace {

/// A longer line would come in pieces, each of which would pass for a name.
constexpr int longestLine = 64 * 1024;

const QString& notFound() {
  static const QString text = QStringLiteral("NOT FOUND!!!");
  return text;
}

bool isEncodingMark(const QString& line) {
  static const QRegularExpression mark(QStringLiteral("^UNICODE(V[0-9]+)?\\s*$"));
  return mark.match(line).hasMatch();
}

} // namespace

NameList::NameList(const QString& path) : m_path(path) {}

QString NameList::take() {
  QString line;
  if (m_state == State::NotAsked && !open()) {
    m_state = State::NotOpened;
  } else if (m_state == State::NotAsked || m_state == State::Line) {
    const bool isFirst = m_state == State::NotAsked;
    bool read = m_reader.readLine(line, longestLine);
    if (read && isFirst && isEncodingMark(line)) {
      read = m_reader.readLine(line, longestLine);
    }
    m_state = read ? State::Line : State::Ended;
  }
  return m_state == State::Line ? line : notFound();
}

bool NameList::open() {
  return !m_path.isEmpty() && m_reader.open(m_path);
}

} // namespace folivex
