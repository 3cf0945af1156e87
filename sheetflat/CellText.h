// CellText: the text that stands for a cell.
#pragma once

#include "sheetflat/Csv.h"

namespace sheetflat {

/// `shown` is what a sheet shows in a cell, by its number format and the width of its column;
/// `exact` is the whole value. The text for the cell is what is shown ("000123", "04.03.2026",
/// "12,50 EUR"), but for a number that is shown rounded, with an exponent or as "###" for want of
/// room: that is given in full.
QString cellText(const QString& shown, const QString& exact);

/// The same for whole sheets of equal shape. False when the shapes differ.
[[nodiscard]] bool mergeCells(CsvRecords& shown, const CsvRecords& exact);

} // namespace sheetflat
