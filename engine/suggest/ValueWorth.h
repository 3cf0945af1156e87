// ValueWorth: how well texts would name documents.
#pragma once

#include <QString>

#include <vector>

namespace folivex {

/// What texts look like, to tell a name from a date, an amount or a part of a sentence; 0 for what
/// names nothing. Empty ones do not count.
double worthOf(const std::vector<QString>& texts, bool hasLabel, bool endsWithColon);

bool hasDigit(QStringView text);

} // namespace folivex
