#include "engine/naming/NameList.h"

#include <QRegularExpression>

#include <utility>

namespace folivex {

namespace {

/// A longer line would come in pieces, each of which would pass for a name.
constexpr int longestLine = 64 * 1024;
constexpr int mostFindings = 10;
constexpr int longestToldLine = 80;

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
  if (m_state == State::NotAsked && !m_lines && !open()) {
    m_state = State::NotOpened;
  } else if (m_state == State::NotAsked || m_state == State::Line) {
    bool read = readLine(m_line);
    if (read && m_lineNumber == 1 && isEncodingMark(m_line)) {
      read = readLine(m_line);
    }
    m_state = read ? State::Line : State::Ended;
  }
  return m_state == State::Line ? m_line : notFound();
}

bool NameList::readLine(QString& line) {
  ++m_lineNumber;
  if (!m_lines) {
    return m_reader.readLine(line, longestLine);
  }
  if (m_lines->empty()) {
    return false;
  }
  line = std::move(m_lines->front());
  m_lines->pop_front();
  return true;
}

void NameList::readWhole() {
  if (m_lines || m_state == State::Ended || (m_state != State::Line && !open())) {
    return;
  }
  std::deque<QString> lines;
  for (QString line; m_reader.readLine(line, longestLine);) {
    lines.push_back(line);
  }
  m_lines = std::move(lines);
}

void NameList::used(const QString& cleaned, const QString& path) {
  const bool isWhole = !m_line.isEmpty() && cleaned == m_line && path.contains(cleaned);
  if (m_state != State::Line || isWhole || ++m_findingCount > mostFindings + 1) {
    return;
  }
  if (m_findingCount > mostFindings) {
    m_findings +=
        QStringLiteral("%1: further lines are empty or hold what no name can hold").arg(m_path);
  } else if (m_line.isEmpty()) {
    m_findings += QStringLiteral("%1: line %2 is empty; its output is %3")
                      .arg(m_path, QString::number(m_lineNumber), path);
  } else {
    m_findings +=
        QStringLiteral("%1: line %2 cannot be a name as it stands (\"%3\"); its output "
                       "is %4")
            .arg(m_path, QString::number(m_lineNumber), m_line.left(longestToldLine), path);
  }
}

QStringList NameList::takeFindings() {
  return std::exchange(m_findings, {});
}

bool NameList::open() {
  return !m_path.isEmpty() && m_reader.open(m_path);
}

} // namespace folivex
