// Texts cut, and read as numbers.
#pragma once

#include <QString>
#include <QStringView>

namespace folivex {

/// Leading blanks, a sign, digits; what follows is ignored and no digit gives 0. A number too large
/// for an int gives the nearest one.
int leadingInteger(QStringView text);

/// A closed range of whole numbers, both ends included. One number n is the range n..n.
struct IntRange {
  int low = 0;
  int high = 0;

  bool contains(int value) const { return low <= value && value <= high; }
  bool operator==(const IntRange&) const = default;
};

/// "100" or "100-120"; what is no number counts as 0.
IntRange leadingRange(QStringView text);

/// Shortens `text` to at most `capacity` characters, never through a surrogate pair.
void cutText(QString& text, qsizetype capacity);

/// One field of a CSV line (RFC 4180). A spreadsheet works out what begins like a formula, and
/// texts of pages get here: such a one gets a "'" in front, and is shown.
QString csvField(QString text);

} // namespace folivex
