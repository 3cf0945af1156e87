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

const QString& NameList::next() {
  if (m_state == State::NotAsked) {
    open();
  }
  return m_next;
}

void NameList::open() {
  if (m_path.isEmpty() || !m_reader.open(m_path)) {
    m_state = State::NotOpened;
    m_next = notFound();
    return;
  }
  readNext();
  if (m_state == State::Line && isEncodingMark(m_next)) {
    readNext();
  }
}

void NameList::readNext() {
  m_state = m_reader.readLine(m_next, longestLine) ? State::Line : State::Ended;
  if (m_state == State::Ended) {
    m_next = notFound();
  }
}

void NameList::take() {
  if (m_state == State::Line) {
    readNext();
  }
}

} // namespace folivex
