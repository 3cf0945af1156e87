// EmailRowRules: what a row must hold to be sent, in plain words when it does not.
#pragma once

#include <QString>

namespace folivex {

/// What is wrong with one e-mail address; empty when it can be one. Whether somebody reads what is
/// sent to it, no one can tell from here.
QString addressProblem(const QString& address);

/// Reads the first and last page of a range, both from 1, inclusive; two blank cells give 0 and 0,
/// the whole file. Returns what is wrong, and the numbers are then as they were; empty when they
/// are good.
QString readPages(const QString& startCell, const QString& endCell, int& start, int& end);

/// The path of a file of which a sheet in `folder` tells `file`; empty when it tells none.
QString fullPath(const QString& file, const QString& folder);

/// What is wrong with a file to attach; empty when it is there.
QString fileProblem(const QString& path);

} // namespace folivex
