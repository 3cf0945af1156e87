// ValueWorth: how well texts would name documents.
#pragma once

#include <QString>

#include <vector>

namespace folivex {

/// How the texts stand on their pages.
struct TextSurroundings {
  bool hasLabel = false;
  bool endsWithColon = false; ///< that label
  bool isPart = false;        ///< other words follow closely, as after a house's number
};

/// What texts look like, to tell a name from a date, an amount or a part of a sentence; 0 for what
/// names nothing. Empty ones do not count.
double worthOf(const std::vector<QString>& texts, const TextSurroundings& around);

bool hasDigit(QStringView text);

/// What all texts begin with up to a colon: a label that is one word with its value.
QString commonLabel(const std::vector<QString>& texts);

} // namespace folivex
