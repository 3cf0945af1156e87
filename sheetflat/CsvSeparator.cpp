#include "sheetflat/Csv.h"

#include <map>

namespace sheetflat {

namespace {

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

QChar takeSeparator(QStringView& text) {
  constexpr QStringView declaration = u"sep=";
  if (text.startsWith(declaration, Qt::CaseInsensitive) && text.size() > declaration.size() + 1 &&
      text[declaration.size() + 1] == u'\n') {
    const QChar declared = text[declaration.size()];
    text = text.sliced(declaration.size() + 2);
    return declared;
  }
  QChar best = u',';
  Evenness bestEvenness = evennessOf(text, best);
  for (const QChar candidate : {QChar(u';'), QChar(u'\t')}) {
    const Evenness evenness = evennessOf(text, candidate);
    if (evenness > bestEvenness) {
      best = candidate;
      bestEvenness = evenness;
    }
  }
  return best;
}

} // namespace sheetflat
