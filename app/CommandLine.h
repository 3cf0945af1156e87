// CommandLine: what the arguments of one start ask for.
#pragma once

#include "engine/base/PagePart.h"
#include "engine/job/PlanPrinter.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace folivex {

/// One thing to do. Actions are done in order: a setup or password counts for the files behind it.
struct CommandAction {
  enum class Kind {
    SetPassword,   ///< value becomes PDFPASSWORD
    SetSetupPath,  ///< value is the setup file that each later file is processed with
    ProcessFile,   ///< value is the path of one source
    ProcessFolder, ///< value is a path with "*": every PDF of that folder
    SendList,      ///< value is a saved list of mails
    Close          ///< end the program; always the last action, wherever "-c" stood
  };
  Kind kind = Kind::Close;
  QString value;
  bool operator==(const CommandAction&) const = default;
};

struct CommandLine {
  /// Longest argument, quotes that are not its own left out. Nothing is cut: a longer one is an
  /// error, since a path that was cut names another file.
  static constexpr int maxArgument = 255;
  static constexpr int maxArguments = 255;

  std::vector<CommandAction> actions;
  /// The program is to end when all is done.
  bool closes() const {
    return !actions.empty() && actions.back().kind == CommandAction::Kind::Close;
  }
  PlanOutput plan = PlanOutput::None;
  bool suggest = false;   ///< propose setups for the sources in place of splitting them
  QString suggestedSetup; ///< the setup file that the best proposal goes to; empty for none
  bool unsure = false;    ///< write it even if it is not sure
  bool force = false;     ///< that file may be there already
  PagePart pages;         ///< the outputs that are wanted
  QString planFile;       ///< that says what they are; empty to find that out
  bool json = false;      ///< records for programs on standard output
  bool help = false;
  bool version = false;
  /// Files that a desktop hands over with "--open" to be looked at: as they came, with no action
  /// beside them, whatever else the line says.
  QStringList opened;
  /// Arguments behind the program's name, none with "--open". With none the program is used at its
  /// window.
  int argumentCount = 0;
  /// Arguments that mean nothing here, and each "-f" without a path; the program goes on without
  /// them. Worth telling: a shell that spells out "-f *.pdf" leaves all files but one in here.
  QStringList ignored;
  /// Why nothing may be done, empty when all is well. Then there are no actions.
  QString error;
  /// With which code the program ends on an error: -2 for a setup path, -1 for anything else.
  int errorCode = 0;
};

/// Understands the arguments as the system hands them over, the program's own path first.
CommandLine parseCommandLine(const QStringList& arguments);
/// The same of the line that a system hands over whole: it is split as splitCommandLine() does, by
/// no other rule.
CommandLine parseCommandLine(QStringView whole);

/// One line made of the arguments: a value with a blank in it stands in quotes.
QString rebuildCommandLine(const QStringList& arguments);

/// The arguments of a line. A quote switches quoting on or off and stays; a blank outside quotes
/// ends an argument and stays at its end.
QStringList splitCommandLine(QStringView line);

// What "--help" and "--version" print.
QString usageText();
QString versionText();

} // namespace folivex
