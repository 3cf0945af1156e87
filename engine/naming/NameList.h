// NameList: the text file that holds one output name a line.
#pragma once

#include "platform/TextFile.h"

#include <QString>

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

private:
  bool open();

  QString m_path;
  platform::TextReader m_reader;
  State m_state = State::NotAsked;
};

} // namespace folivex
