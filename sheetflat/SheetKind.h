// SheetKind: what a file is, by its content. Names lie: many a ".xls" is a text file.
#pragma once

#include <QByteArray>

namespace sheetflat {

enum class SheetKind {
  OpenXml,      ///< .xlsx
  Binary,       ///< .xls
  OpenDocument, ///< .ods
  Text,         ///< separated values
  Encrypted,    ///< a workbook that needs a password
  WebPage,      ///< which some programs save as ".xls"
  Other         ///< no spreadsheet
};

/// What the bytes of a file say that it is; it may still be damaged.
SheetKind kindOf(const QByteArray& content);

} // namespace sheetflat
