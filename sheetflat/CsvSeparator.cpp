#include "sheetflat/Csv.h"

#include <algorithm>
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
  static constexpr char16_t candidates[] = {u',', u';', u'\t'};
  return *std::ranges::max_element(
      candidates, {}, [text](char16_t candidate) { return evennessOf(text, candidate); });
}

} // namespace sheetflat
