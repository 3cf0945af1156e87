// EmailRows: the rows of a sheet as entries of an e-mail list.
#pragma once

#include "mail/EmailEntry.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace folivex {

/// Something in a spreadsheet that a person should look at before the mails go out.
struct ImportFinding {
  int row = 0; ///< of the sheet, from 1; 0: about the sheet as a whole
  QString what;

  /// "Row 7: ..." or the bare text.
  QString text() const;

  bool operator==(const ImportFinding&) const = default;
};

struct EmailImport {
  bool done = false;
  QString problem; ///< why nothing was imported, in plain words; empty when done
  /// In the order of the rows. Texts are whole, see fitted().
  EmailEntries entries;
  std::vector<ImportFinding> findings;
};

/// The entries of a sheet's rows (row 1 first); see importEmailList(). A file that is no full path
/// lies in `folder` or below.
EmailImport emailsOfRows(const std::vector<QStringList>& rows, const QString& folder);

} // namespace folivex
