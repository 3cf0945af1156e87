// NameList: the text file that holds one output name a line.
#pragma once

#include "platform/TextFile.h"

#include <QString>
#include <QStringList>

#include <deque>
#include <optional>

namespace folivex {

/// Reads names in order and keeps its place from one output to the next. Every line counts, an
/// empty one too: a line left out would give all later outputs a name that is not theirs. A first
/// line that only tells the file's encoding ("UNICODE", "UNICODEV4") is no name.
class NameList {
public:
  enum class State {
    NotAsked,  ///< the method of naming does not use the list
    Line,      ///< the name is a line of the list
    NotOpened, ///< the file cannot be opened; the name is "NOT FOUND!!!"
    Ended      ///< there are fewer lines than outputs; the name is "NOT FOUND!!!"
  };

  NameList() = default;
  explicit NameList(const QString& path);
  const QString& path() const { return m_path; }

  /// The next line. The file is opened at the first call.
  QString take();
  /// What the last call of take() found.
  State state() const { return m_state; }

  /// Reads all lines now: the file is about to go.
  void readWhole();

  /// What became of the line that was taken last: its cleaned form, and the path of the output.
  void used(const QString& cleaned, const QString& path);
  /// The lines that did not become names as they stand, since the last call; each is told once, and
  /// of a list at most ten by their numbers.
  QStringList takeFindings();

private:
  bool open();
  bool readLine(QString& line);

  QString m_path;
  platform::TextReader m_reader;
  std::optional<std::deque<QString>> m_lines; ///< still to be taken, when they were read before
  State m_state = State::NotAsked;
  QString m_line;
  int m_lineNumber = 0; ///< of m_line, from 1
  int m_findingCount = 0;
  QStringList m_findings;
};

} // namespace folivex
