#include "app/dialogs/SetupChecks.h"

#include "app/dialogs/FieldChecks.h"
#include "app/dialogs/SettingUse.h"
#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFile.h"
#include "engine/setup/SplitMethod.h"
#include "mail/EmailSettingsCheck.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"

#include <QRegularExpression>

namespace folivex {

namespace {

using S = SplitSetup;

/// Settings are judged one by one; what is not in use says nothing.
class Findings {
public:
  explicit Findings(const S& setup) : m_idle(idleSettings(setup)) {}

  void problem(const char* key, const QString& text, bool isSo = true) {
    add({QString::fromLatin1(key), text, FindingKind::Problem}, isSo);
  }
  void hint(const char* key, const QString& text, bool isSo = true) {
    add({QString::fromLatin1(key), text, FindingKind::Hint}, isSo);
  }
  void add(const SettingFinding& finding, bool isSo = true) {
    if (isSo && !finding.text.isEmpty() && !m_idle.contains(finding.key)) {
      all.push_back(finding);
    }
  }
  SettingFindings all;

private:
  QSet<QString> m_idle;
};

QString unreadable() {
  return QStringLiteral("There is no such file, or it cannot be read.");
}

bool isReadable(const QString& path) {
  return platform::isReadableFile(platform::withoutTrailingBlanks(path));
}

/// What a position says that can be read: 0 is anywhere, a negative number the length of a word.
struct WrittenPosition {
  explicit WrittenPosition(const QString& text) {
    static const QRegularExpression number(QStringLiteral("^\\s*(-?\\d+)\\s*$"));
    const QRegularExpressionMatch match = number.match(text);
    isOneNumber = text.trimmed().isEmpty() || match.hasMatch();
    low = match.captured(1).toInt();
    isPlace = !isOneNumber || low > 0;
  }
  bool isOneNumber = false; ///< no range, no alternative
  int low = 0;              ///< of one number
  bool isPlace = false;
};

void checkPosition(const S& setup, Findings& findings) {
  const QString problemOfH = positionProblem(setup.matchPosH);
  const QString problemOfV = positionProblem(setup.matchPosV);
  findings.problem("MATCHPOSH", problemOfH);
  findings.problem("MATCHPOSV", problemOfV);
  if (!problemOfH.isEmpty() || !problemOfV.isEmpty()) {
    return;
  }
  const WrittenPosition h(setup.matchPosH);
  const WrittenPosition v(setup.matchPosV);
  const bool isNowhere = !h.isPlace && !v.isPlace;
  findings.problem(h.low < 0 ? "MATCHPOSH" : "MATCHPOSV",
                   QStringLiteral("This is the length of a word. One of both fields must tell a "
                                  "place on the page."),
                   isNowhere && (h.low < 0 || v.low < 0));
  findings.problem("MATCHPOSH",
                   QStringLiteral("This method needs a position: a click on a word of the page "
                                  "offers its own."),
                   isNowhere && h.low == 0 && v.low == 0);
  // In one field stands no place, in the other more than a number.
  const QString onlyFirst = QStringLiteral("With no position in the other field only the first "
                                           "number here counts.");
  findings.hint("MATCHPOSH", onlyFirst, !v.isPlace && !h.isOneNumber);
  findings.hint("MATCHPOSV", onlyFirst, !h.isPlace && !v.isOneNumber);
}

void checkSearch(const S& setup, Findings& findings) {
  findings.hint("STARTFROMPAGE", QStringLiteral("This means the first page."),
                setup.startFromPage < 0);
  findings.problem("STARTENDPAGE", QStringLiteral("The last page comes before the first."),
                   setup.startEndPage > 0 && setup.startEndPage < setup.startFromPage);
  findings.problem("FINDSTRING", contradictionIn(setup));
  findings.hint("FINDSTRING",
                QStringLiteral("With nothing to find, every word of every page matches."),
                setup.findString.isEmpty() && !matchesAtPosition(setup));
  checkPosition(setup, findings);
  findings.hint("EXTRACTUNTIL", QStringLiteral("Without a word here the first range never ends."),
                setup.extractUntil.isEmpty());
  findings.hint("UNTILMATCHPOSH",
                QStringLiteral("The until word is found nowhere while neither field tells a place "
                               "on the page."),
                setup.untilMatchPosH <= 0 && setup.untilMatchPosV <= 0);
}

/// Text is removed from matched words, and not from the rest of a line.
bool keepsRemovedText(const S& setup) {
  return matchesWords(setup) && takesRestOfLine(fileNameMethodOf(setup.extract)) &&
         !setup.otherSettingsRemoveText.isEmpty();
}

void checkNames(const S& setup, Findings& findings) {
  findings.problem("EXTRACT",
                   QStringLiteral("Choose the list of names first: Settings, Report and file "
                                  "options, Filelist."),
                   fileNameMethodOf(setup.extract) == FileNameMethod::FileList &&
                       setup.reportUseFileList.isEmpty());
  findings.hint("EXTRACT",
                QStringLiteral("The text to remove (Settings, Other settings) stays in names that "
                               "take the rest of a line."),
                keepsRemovedText(setup));
  findings.hint("PREFIXFILENAME", tokenHint(setup.prefixFileName));
  findings.hint("POSTFIXFILENAME", tokenHint(setup.postfixFileName));
}

void checkOutput(const S& setup, SetupPurpose purpose, Findings& findings) {
  if (setup.outputDir.isEmpty()) {
    findings.hint("OUTPUTDIR",
                  QStringLiteral("Left empty: %1").arg(platform::defaultOutputFolder()));
    return;
  }
  if (purpose == SetupPurpose::Splitting || purpose == SetupPurpose::SplittingList) {
    findings.problem("OUTPUTDIR", folderProblem(setup.outputDir));
  }
  findings.hint("OUTPUTDIR",
                QStringLiteral("The files in this folder are deleted when a run begins (Settings, "
                               "Other settings)."),
                setup.otherSettingsRemoveFiles);
}

} // namespace

SettingFindings checkSplitSettings(const S& setup, SetupPurpose purpose) {
  Findings findings(setup);
  if (purpose != SetupPurpose::Editing && purpose != SetupPurpose::SplittingList) {
    const bool isChosen = !platform::withoutTrailingBlanks(setup.fileName).isEmpty();
    findings.problem("FILENAME",
                     isChosen ? unreadable() : QStringLiteral("Choose the PDF to split."),
                     !isReadable(setup.fileName));
  }
  if (purpose != SetupPurpose::Viewing) {
    checkSearch(setup, findings);
    checkNames(setup, findings);
    checkOutput(setup, purpose, findings);
  }
  return std::move(findings.all);
}

SettingFindings checkReportOptions(const S& setup) {
  Findings findings(setup);
  const QString& folder = setup.reportOptionsOutputFolder;
  findings.problem("REPORTOPTIONSOUTPUTFOLDER",
                   folder.isEmpty() ? QString() : folderProblem(folder));
  findings.problem("REPORTUSEFILELIST", unreadable(),
                   !setup.reportUseFileList.isEmpty() && !isReadable(setup.reportUseFileList));
  return std::move(findings.all);
}

SettingFindings checkOtherSettings(const S& setup) {
  Findings findings(setup);
  findings.hint("OTHERSETTINGSREMOVEFILES",
                QStringLiteral("Deletes the files in %1.").arg(setup.outputDir),
                setup.otherSettingsRemoveFiles && !setup.outputDir.isEmpty());
  findings.hint("OTHERSETTINGSREMOVETEXT",
                QStringLiteral("Not removed by the chosen Filename extract: it takes the rest of "
                               "the line as it is."),
                keepsRemovedText(setup));
  return std::move(findings.all);
}

SettingFindings checkExternalCommand(const S& setup) {
  Findings findings(setup);
  findings.problem("CONFIGEXTERNALCOMMAND", QStringLiteral("Name the program to start."),
                   setup.configExternalCommand.trimmed().isEmpty());
  for (const char* placeholder : {"[IN]", "[OUT]", "[START]", "[END]"}) {
    const QString name = QString::fromLatin1(placeholder);
    findings.hint("CONFIGEXTERNALPARAMS",
                  QStringLiteral("%1 is missing: the program is not told of it.").arg(name),
                  !setup.configExternalParams.contains(name));
  }
  findings.hint("CONFIGUSEEXTERNAL",
                QStringLiteral("Not used while outputs are appended to files that exist."),
                setup.configUseExternal && setup.alwaysAppend);
  return std::move(findings.all);
}

SettingFindings checkEmailDialog(const S& setup) {
  Findings findings(setup);
  const bool isTouched = !setup.emailSmtp.isEmpty() || !setup.emailFrom.isEmpty();
  for (SettingFinding found : checkEmailSettings(setup)) {
    found.kind = setup.emailEnable ? found.kind : FindingKind::Hint;
    findings.add(found, setup.emailEnable || isTouched);
  }
  const QString backwards = QStringLiteral("This range ends before it begins.");
  findings.problem("EMAILMATCHVERTTO", backwards,
                   setup.emailMatchVert >= 0 && setup.emailMatchVertTo < setup.emailMatchVert);
  findings.problem("EMAILMATCHHORIZTO", backwards,
                   setup.emailMatchHorizFrom >= 0 &&
                       setup.emailMatchHorizTo < setup.emailMatchHorizFrom);
  return std::move(findings.all);
}

SettingFindings lostInFile(const SplitSetup& setup, const QStringList& keys) {
  SettingFindings findings;
  for (const QString& key : keysLostInFile(setup)) {
    if (keys.contains(key)) {
      findings.push_back({key,
                          QStringLiteral("A setup file cannot keep this text whole (it must hold "
                                         "no \";\" and not be too long)."),
                          FindingKind::Hint});
    }
  }
  return findings;
}

} // namespace folivex
