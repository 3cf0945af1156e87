// What "--help" and "--version" print.
#pragma once

#include <QString>

namespace folivex {

QString usageText();
QString versionText();

} // namespace folivex
