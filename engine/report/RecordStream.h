// RecordStream: what one command did, as lines for programs.
#pragma once

#include <QString>

#include <cstdio>

class QJsonObject;

namespace folivex {

/// JSON Lines: one object a line (RFC 8259), ASCII alone, ending in LF, flushed as it is written,
/// so that a killed program leaves whole lines. The first is of type "begin" and names the format
/// and its version, the last of type "end": without it the program did not come to its end.
/// docs/json.md describes the types, docs/json.schema.json what is in them.
class RecordStream {
public:
  /// Fields may be added to a version; what is there stays as it is.
  static constexpr int version = 1;

  /// Owns nothing; with null all lines go nowhere.
  explicit RecordStream(std::FILE* out) : m_out(out) {}

  bool isOpen() const { return m_out != nullptr; }

  /// `work` is "run", "plan" or "suggest".
  void begin(const QString& work, const QString& programVersion);
  /// The records that follow are of the source with this number, from 1; 0: of none.
  void setSource(int source) { m_source = source; }
  void write(const QJsonObject& record);
  /// False when not all lines could be written; then nobody can rely on them.
  [[nodiscard]] bool end(int exitCode);

private:
  std::FILE* m_out;
  int m_source = 0;
  int m_results = 0; ///< sources whose end was told
  bool m_isWhole = true;
};

} // namespace folivex
