// FieldChecks: whether what was typed into a field can be what the field asks for.
#pragma once

#include <QString>

#include <limits>

namespace folivex {

/// Least and greatest whole number of a field, both included.
struct WholeLimits {
  int least = std::numeric_limits<int>::min();
  int most = std::numeric_limits<int>::max();
};

// Each returns an empty text, or what is wrong in plain words. Blanks around a value do not count.

QString wholeNumberProblem(const QString& text, WholeLimits limits);

/// A decimal number above 0, with a point.
QString factorProblem(const QString& text);

/// A position to match: n, n-m, n|k or n-m|k; the first may be negative. Empty is none, no problem.
QString positionProblem(const QString& text);

/// A folder that files are to be written to: it is there, or could be made. Asks the disk.
QString folderProblem(const QString& path);

} // namespace folivex
