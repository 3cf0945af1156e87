// EmailRows: the rows of a sheet as entries of an e-mail list.
#pragma once

#include "mail/import/EmailImport.h"

#include <QStringList>

namespace folivex {

/// The entries of a sheet's rows (row 1 first); see importEmailList(). A file that is no full path
/// lies in `folder` or below.
EmailImport emailsOfRows(const std::vector<QStringList>& rows, const QString& folder);

} // namespace folivex
