#include "engine/report/RecordStream.h"

#include "engine/base/RunFinding.h"
#include "engine/report/RecordFields.h"

#include <QJsonDocument>

namespace folivex {

namespace {

/// Neither the characters that a terminal would obey nor the coding of its locale matter then.
QByteArray asciiLine(const QJsonObject& record) {
  QByteArray line;
  const QString text = QString::fromUtf8(QJsonDocument(record).toJson(QJsonDocument::Compact));
  line.reserve(text.size() + 1);
  for (const QChar c : text) {
    constexpr char16_t lastOfAscii = 0x7E;
    if (c.unicode() <= lastOfAscii) {
      line += c.toLatin1();
    } else {
      line += "\\u" + QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    }
  }
  return line + '\n';
}

} // namespace

void RecordStream::begin(const QString& work, const QString& programVersion) {
  QJsonObject record = recordOf("begin");
  record[QLatin1StringView("format")] = QStringLiteral("folivex-records");
  record[QLatin1StringView("version")] = version;
  record[QLatin1StringView("program")] = programVersion;
  record[QLatin1StringView("work")] = work;
  write(record);
}

void RecordStream::write(const QJsonObject& record) {
  if (m_out == nullptr) {
    return;
  }
  QJsonObject numbered = record;
  if (m_source > 0) {
    numbered[QLatin1StringView("source")] = m_source;
  }
  const bool isResult = record.value(QLatin1StringView("type")) == QLatin1StringView("result");
  m_results += isResult ? 1 : 0;
  const QByteArray line = asciiLine(numbered);
  const auto size = static_cast<std::size_t>(line.size());
  m_source = isResult ? 0 : m_source; // what follows is of none, or of another
  m_isWhole =
      m_isWhole && std::fwrite(line.constData(), 1, size, m_out) == size && std::fflush(m_out) == 0;
}

bool RecordStream::end(int exitCode) {
  m_source = 0;
  QJsonObject record = recordOf("end");
  record[QLatin1StringView("exitCode")] = exitCode;
  record[QLatin1StringView("error")] = findingWord(runFindingOf(exitCode));
  record[QLatin1StringView("results")] = m_results;
  write(record);
  return m_isWhole;
}

} // namespace folivex
