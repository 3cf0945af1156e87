#include "sheetflat/CellText.h"

#include <QRegularExpression>

#include <algorithm>

namespace sheetflat {

namespace {

constexpr QChar minusSign = QChar(0x2212);

/// Digits with or without a decimal point or comma, and perhaps an exponent.
bool isPlainNumber(const QString& text) {
  static const QRegularExpression number(
      QStringLiteral("\\A-?[0-9]+(?:[.,][0-9]+)?(?:[eE][-+]?[0-9]+)?\\z"));
  return number.match(text).hasMatch();
}

double valueOf(QString number) {
  return number.replace(u',', u'.').toDouble();
}

bool isFilledWithHashes(const QString& text) {
  return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) { return c == u'#'; });
}

} // namespace

QString cellText(const QString& shown, const QString& exact) {
  if (shown == exact) {
    return shown;
  }
  if (isFilledWithHashes(shown)) {
    return exact;
  }
  QString number = shown;
  number.replace(minusSign, u'-');
  if (!isPlainNumber(number) || !isPlainNumber(exact)) {
    return shown;
  }
  const bool isWhole = valueOf(number) == valueOf(exact) && !number.contains(u'E');
  return isWhole ? number : exact;
}

bool mergeCells(CsvRecords& shown, const CsvRecords& exact) {
  if (shown.size() != exact.size()) {
    return false;
  }
  for (std::size_t row = 0; row < shown.size(); row++) {
    QStringList& cells = shown[row];
    if (cells.size() != exact[row].size()) {
      return false;
    }
    for (qsizetype column = 0; column < cells.size(); column++) {
      cells[column] = cellText(cells[column], exact[row][column]);
    }
  }
  return true;
}

} // namespace sheetflat
