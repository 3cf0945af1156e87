#include "sheetflat/Csv.h"

#include "platform/TextFile.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <map>

namespace sheetflat {

namespace {

constexpr QChar quote = u'"';
constexpr QChar lineEnd = u'\n';

class Parser {
public:
  Parser(QStringView text, QChar separator) : m_text(text), m_separator(separator) {}

  bool atEnd() const { return m_next >= m_text.size(); }

  /// The next record. False when a quote in it is never closed.
  bool readRecord(QStringList& record) {
    record.clear();
    for (;;) {
      QString field;
      if (!readField(field)) {
        return false;
      }
      record += field;
      if (atEnd()) {
        return true;
      }
      if (m_text[m_next++] == lineEnd) {
        return true;
      }
    }
  }

private:
  /// Ends before the separator or line end that follows.
  bool readField(QString& field) {
    if (!atEnd() && m_text[m_next] == quote && !readQuoted(field)) {
      return false;
    }
    const qsizetype start = m_next;
    while (!atEnd() && m_text[m_next] != m_separator && m_text[m_next] != lineEnd) {
      m_next++;
    }
    field += m_text.sliced(start, m_next - start);
    return true;
  }

  bool readQuoted(QString& field) {
    m_next++;
    for (;;) {
      const qsizetype closing = m_text.indexOf(quote, m_next);
      if (closing < 0) {
        return false;
      }
      field += m_text.sliced(m_next, closing - m_next);
      m_next = closing + 1;
      if (atEnd() || m_text[m_next] != quote) {
        return true;
      }
      field += quote;
      m_next++;
    }
  }

  QStringView m_text;
  QChar m_separator;
  qsizetype m_next = 0;
};

void appendField(QString& line, const QString& field) {
  const bool needsQuotes = field.trimmed() != field || std::ranges::any_of(field, [](QChar c) {
                             return c == quote || c == u',' || c == lineEnd || c == u'\r' ||
                                    c == QChar::ByteOrderMark; // which a file may not begin with
                           });
  const QString doubled = QString(field).replace(u'"', QLatin1String("\"\""));
  line += needsQuotes ? quote + doubled + quote : field;
}

constexpr qsizetype sampledRecords = 50;
// A quote that never closes makes the first record the whole file.
constexpr qsizetype sampledCharacters = 65536;

struct Evenness {
  qsizetype records = 0; ///< of the most frequent length, lengths of one field not counted
  qsizetype fields = 0;  ///< that length

  auto operator<=>(const Evenness&) const = default;
};

Evenness evennessOf(QStringView text, QChar separator) {
  std::map<qsizetype, qsizetype> recordsOfLength;
  for (const QStringList& record :
       parseCsv(text.left(sampledCharacters), separator, sampledRecords).records) {
    recordsOfLength[record.size()]++;
  }
  Evenness best;
  for (const auto& [fields, records] : recordsOfLength) {
    if (fields > 1) {
      best = std::max(best, Evenness{records, fields});
    }
  }
  return best;
}

} // namespace

bool readTextFile(const QString& path, QString& text, QString& problem) {
  if (QFileInfo(path).size() > csvSizeLimit) {
    problem = QStringLiteral("it is larger than %1 MB").arg(csvSizeLimit / 1024 / 1024);
    return false;
  }
  folivex::platform::TextReader reader;
  if (!reader.open(path)) {
    problem = reader.errorText();
    return false;
  }
  text.clear();
  QString line;
  while (reader.readLine(line, std::numeric_limits<int>::max())) {
    text += line + lineEnd;
  }
  problem = reader.errorText();
  return problem.isEmpty();
}

CsvText parseCsv(QStringView text, QChar separator, qsizetype mostRecords) {
  CsvText csv;
  Parser parser(text, separator);
  QStringList record;
  while (!parser.atEnd() && std::ssize(csv.records) != mostRecords) {
    if (!parser.readRecord(record)) {
      csv.unclosedQuote = std::ssize(csv.records) + 1;
      return csv;
    }
    csv.records.push_back(record);
  }
  return csv;
}

QChar takeSeparator(QStringView& text) {
  constexpr QStringView declaration = u"sep=";
  if (text.startsWith(declaration, Qt::CaseInsensitive) && text.size() > declaration.size() + 1 &&
      text[declaration.size() + 1] == u'\n') {
    const QChar declared = text[declaration.size()];
    text = text.sliced(declaration.size() + 2);
    return declared;
  }
  static constexpr char16_t candidates[] = {u',', u';', u'\t'};
  return *std::ranges::max_element(
      candidates, {}, [text](char16_t candidate) { return evennessOf(text, candidate); });
}

QByteArray csvOf(const CsvRecords& records) {
  QString text;
  for (const QStringList& record : records) {
    for (qsizetype i = 0; i < record.size(); i++) {
      if (i > 0) {
        text += u',';
      }
      appendField(text, record[i]);
    }
    text += lineEnd;
  }
  return text.toUtf8();
}

} // namespace sheetflat
