// SetupFile: the setup file's text, read into a record and made from one.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QLatin1StringView>
#include <QSet>
#include <QStringList>
#include <QStringView>

namespace folivex::platform {
class TextReader;
}

namespace folivex {

/// What a setup file is read into. The settings without a control of their own (see
/// SetupField::workingOnly) go to the working copy at once, all others to the edited copy.
struct SetupTarget {
  SplitSetup& edited;
  SplitSetup& working;
  bool& automation;               ///< set by the key AUTOMATION, never cleared
  bool unattended = false;        ///< USECURRENT is 0 as with the key AUTOMATION
  QSet<QLatin1StringView> keys{}; ///< those that gave a value
};

/// What a file turned out to be.
struct SetupText {
  bool hasHeader = false;
  bool isCutOff = false; ///< it has the header, and its last line does not end
};

/// The whole file as text: the header line and one line a field, each ending in CR LF. What the
/// text-file layer makes of line ends is not in it.
QString setupFileText(const SplitSetup& setup);

/// Takes one line: key, ";", value. A value that spells a later key is taken as that key too, with
/// the line's next token as its value; one without a further token changes nothing. "KEY;" with
/// nothing behind it is an empty value, since editors cut blanks at the ends of lines. Returns how
/// many values were taken.
int readSetupLine(QStringView line, SetupTarget& target);

/// Takes every line of a file, from its first on.
SetupText readSetupLines(platform::TextReader& reader, SetupTarget& target);

/// Whether the line's key is AUTOMATION.
bool isAutomationLine(QStringView line);

/// Keys whose value will not come back from the file as it is now: it holds the separator ";" or a
/// line end, or is too long for a line. The format has no quoting.
QStringList keysLostInFile(const SplitSetup& setup);

} // namespace folivex
