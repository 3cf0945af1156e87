// LastMessages: what was told last, for a report of a problem.
#pragma once

#include <QStringList>

namespace folivex {

/// Keeps the newest ones and forgets the rest. Long ones are cut: a message may quote a whole page.
class LastMessages {
public:
  static constexpr qsizetype atMost = 40;
  static constexpr qsizetype longest = 500; ///< characters

  void add(const QString& text) {
    m_lines += text.left(longest);
    if (m_lines.size() > atMost) {
      m_lines.removeFirst();
    }
  }
  const QStringList& lines() const { return m_lines; }

private:
  QStringList m_lines;
};

} // namespace folivex
