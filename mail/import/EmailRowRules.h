// EmailRowRules: what a row must hold to be sent, in plain words when it does not.
#pragma once

#include <QString>

namespace folivex {

/// Reads the first and last page of a range, both from 1, inclusive; two blank cells give 0 and 0,
/// the whole file. Returns what is wrong, and the numbers are then as they were; empty when they
/// are good.
QString readPages(const QString& startCell, const QString& endCell, int& start, int& end);

/// The path of a file of which a sheet in `folder` tells `file`; empty when it tells none.
QString fullPath(const QString& file, const QString& folder);

/// What is wrong with a file to attach; empty when it is there.
QString fileProblem(const QString& path);

} // namespace folivex
