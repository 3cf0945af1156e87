// EmailImport: an e-mail list out of a spreadsheet.
#pragma once

#include "mail/import/EmailRows.h"

#include <QString>

#include <functional>

namespace folivex {

/// Reads the first sheet of `spreadsheet` (.xlsx, .xls, .ods, .csv) with the program Sheetflat.
///
/// The columns are known by their headers, which are those of the e-mail list ("Email", "File",
/// "Extract Page Start" ...), in any order and case; the first row that holds "Email" is the one of
/// the headers. A column that is missing is empty in every entry.
///
/// An entry whose address or file is no good stays in the list, where it can be put right, with a
/// finding. A row whose pages make no range is left out, with a finding: sent as it is, its
/// receiver would get other people's pages.
///
/// `tick` is called every 100 ms; it lets the window live and returns true to stop, which imports
/// nothing.
EmailImport importEmailList(const QString& spreadsheet, const std::function<bool()>& tick);

} // namespace folivex
