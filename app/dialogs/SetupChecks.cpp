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

class Findings {
public:
  void problem(const char* key, const QString& text) { add(key, text, FindingKind::Problem); }
  void hint(const char* key, const QString& text) { add(key, text, FindingKind::Hint); }
  SettingFindings all;

private:
  void add(const char* key, const QString& text, FindingKind kind) {
    if (!text.isEmpty()) {
      all.push_back({QString::fromLatin1(key), text, kind});
    }
  }
};

void checkSource(const SplitSetup& setup, Findings& findings) {
  const QString path = platform::withoutTrailingBlanks(setup.fileName);
  if (setup.useCurrent) {
    return; // the window knows what is open
  }
  if (path.isEmpty()) {
    findings.problem("FILENAME", QStringLiteral("Choose the PDF to split."));
  } else if (!platform::isReadableFile(path)) {
    findings.problem("FILENAME", QStringLiteral("There is no such file, or it cannot be read."));
  }
}

void checkPages(const SplitSetup& setup, Findings& findings) {
  if (!matchesWords(setup)) {
    return;
  }
  if (setup.startFromPage < 0) {
    findings.hint("STARTFROMPAGE", QStringLiteral("This means the first page."));
  }
  if (setup.startEndPage > 0 && setup.startEndPage < setup.startFromPage) {
    findings.problem("STARTENDPAGE", QStringLiteral("The last page comes before the first."));
  }
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

/// In one field stands no place, in the other `text`: of a range there, only the first number
/// counts.
void hintAtRange(const char* key, const WrittenPosition& position, Findings& findings) {
  if (!position.isOneNumber) {
    findings.hint(key, QStringLiteral("With no position in the other field only the first number "
                                      "here counts."));
  }
}

void checkPosition(const SplitSetup& setup, Findings& findings) {
  const QString problemOfH = positionProblem(setup.matchPosH);
  const QString problemOfV = positionProblem(setup.matchPosV);
  findings.problem("MATCHPOSH", problemOfH);
  findings.problem("MATCHPOSV", problemOfV);
  if (!problemOfH.isEmpty() || !problemOfV.isEmpty()) {
    return;
  }
  const WrittenPosition h(setup.matchPosH);
  const WrittenPosition v(setup.matchPosV);
  if (!h.isPlace && !v.isPlace) {
    const bool isLength = h.low < 0 || v.low < 0;
    findings.problem(h.low < 0 || !isLength ? "MATCHPOSH" : "MATCHPOSV",
                     isLength ? QStringLiteral("This is the length of a word. One of both fields "
                                               "must tell a place on the page.")
                              : QStringLiteral("This method needs a position: a click on a "
                                               "word of the page offers its own."));
  } else if (!v.isPlace) {
    hintAtRange("MATCHPOSH", h, findings);
  } else if (!h.isPlace) {
    hintAtRange("MATCHPOSV", v, findings);
  }
}

void checkUntilPosition(const SplitSetup& setup, Findings& findings) {
  if (splitMethodOf(setup.pageExtract) == SplitMethod::MatchToUntilAtPosition &&
      setup.untilMatchPosH <= 0 && setup.untilMatchPosV <= 0) {
    findings.hint(
        "UNTILMATCHPOSH",
        QStringLiteral("The until word is found nowhere while neither field tells a place "
                       "on the page."));
  }
}

void checkSearch(const SplitSetup& setup, Findings& findings) {
  if (!matchesWords(setup)) {
    return;
  }
  const bool atPosition = matchesAtPosition(setup);
  findings.problem("FINDSTRING", contradictionIn(setup));
  if (setup.findString.isEmpty() && !atPosition) {
    findings.hint("FINDSTRING",
                  QStringLiteral("With nothing to find, every word of every page matches."));
  }
  if (atPosition) {
    checkPosition(setup, findings);
  }
  if (endsAtUntilWords(setup) && setup.extractUntil.isEmpty()) {
    findings.hint("EXTRACTUNTIL",
                  QStringLiteral("Without a word here the first range never ends."));
  }
  checkUntilPosition(setup, findings);
}

/// Text is removed from matched words, and not from the rest of a line.
bool keepsRemovedText(const SplitSetup& setup) {
  return matchesWords(setup) && takesRestOfLine(fileNameMethodOf(setup.extract)) &&
         !setup.otherSettingsRemoveText.isEmpty();
}

void checkNames(const SplitSetup& setup, Findings& findings) {
  if (matchesWords(setup) && fileNameMethodOf(setup.extract) == FileNameMethod::FileList &&
      setup.reportUseFileList.isEmpty()) {
    findings.problem("EXTRACT", QStringLiteral("Choose the list of names first: Settings, Report "
                                               "and file options, Filelist."));
  }
  if (keepsRemovedText(setup)) {
    findings.hint("EXTRACT",
                  QStringLiteral("The text to remove (Settings, Other settings) stays in "
                                 "names that take the rest of a line."));
  }
  if (!setup.useSourceFileName) {
    findings.hint("PREFIXFILENAME", tokenHint(setup.prefixFileName));
  }
  if (!setup.useSourceFileNamePost) {
    findings.hint("POSTFIXFILENAME", tokenHint(setup.postfixFileName));
  }
}

void checkOutput(const SplitSetup& setup, SetupPurpose purpose, Findings& findings) {
  if (setup.splitToSource) {
    return;
  }
  const bool writes = purpose == SetupPurpose::Splitting || purpose == SetupPurpose::SplittingList;
  if (writes && !setup.outputDir.isEmpty()) {
    findings.problem("OUTPUTDIR", folderProblem(setup.outputDir));
  }
  if (setup.otherSettingsRemoveFiles && !setup.outputDir.isEmpty()) {
    findings.hint("OUTPUTDIR", QStringLiteral("The files in this folder are deleted when a run "
                                              "begins (Settings, Other settings)."));
  } else if (setup.outputDir.isEmpty()) {
    findings.hint("OUTPUTDIR",
                  QStringLiteral("Left empty: %1").arg(platform::defaultOutputFolder()));
  }
}

} // namespace

SettingFindings checkSplitSettings(const SplitSetup& setup, SetupPurpose purpose) {
  Findings findings;
  if (purpose != SetupPurpose::Editing && purpose != SetupPurpose::SplittingList) {
    checkSource(setup, findings);
  }
  if (purpose != SetupPurpose::Viewing) {
    checkPages(setup, findings);
    checkSearch(setup, findings);
    checkNames(setup, findings);
    checkOutput(setup, purpose, findings);
  }
  return std::move(findings.all);
}

SettingFindings checkReportOptions(const SplitSetup& setup) {
  Findings findings;
  if (!setup.reportOptionsCurrent && !setup.reportOptionsOutputFolder.isEmpty()) {
    findings.problem("REPORTOPTIONSOUTPUTFOLDER", folderProblem(setup.reportOptionsOutputFolder));
  }
  if (!setup.reportUseFileList.isEmpty() &&
      !platform::isReadableFile(platform::withoutTrailingBlanks(setup.reportUseFileList))) {
    findings.problem("REPORTUSEFILELIST",
                     QStringLiteral("There is no such file, or it cannot be read."));
  }
  return std::move(findings.all);
}

SettingFindings checkOtherSettings(const SplitSetup& setup) {
  Findings findings;
  if (setup.otherSettingsRemoveFiles && !setup.splitToSource && !setup.outputDir.isEmpty()) {
    findings.hint("OTHERSETTINGSREMOVEFILES",
                  QStringLiteral("Deletes the files in %1.").arg(setup.outputDir));
  } else if (setup.splitToSource) {
    findings.hint("OTHERSETTINGSREMOVEFILES",
                  QStringLiteral("Not done while outputs go to the source's own folder."));
  }
  if (keepsRemovedText(setup)) {
    findings.hint("OTHERSETTINGSREMOVETEXT",
                  QStringLiteral("Not removed by the chosen Filename extract: it takes the rest of "
                                 "the line as it is."));
  }
  return std::move(findings.all);
}

SettingFindings checkExternalCommand(const SplitSetup& setup) {
  Findings findings;
  if (!setup.configUseExternal) {
    return {};
  }
  if (setup.configExternalCommand.trimmed().isEmpty()) {
    findings.problem("CONFIGEXTERNALCOMMAND", QStringLiteral("Name the program to start."));
  }
  for (const char* placeholder : {"[IN]", "[OUT]", "[START]", "[END]"}) {
    if (!setup.configExternalParams.contains(QLatin1String(placeholder))) {
      findings.hint("CONFIGEXTERNALPARAMS",
                    QStringLiteral("%1 is missing: the program is not told of it.")
                        .arg(QLatin1String(placeholder)));
      break;
    }
  }
  if (setup.alwaysAppend) {
    findings.hint("CONFIGUSEEXTERNAL",
                  QStringLiteral("Not used while outputs are appended to files that exist."));
  }
  return std::move(findings.all);
}

SettingFindings checkEmailDialog(const SplitSetup& setup) {
  Findings findings;
  const auto hintUnlessEnabled = setup.emailEnable ? FindingKind::Problem : FindingKind::Hint;
  const bool isUntouched = setup.emailSmtp.isEmpty() && setup.emailFrom.isEmpty();
  if (setup.emailEnable || !isUntouched) {
    for (const EmailSettingsFinding& finding : checkEmailSettings(setup)) {
      findings.all.push_back(
          {finding.field, finding.text,
           finding.weight == FindingWeight::Problem ? hintUnlessEnabled : FindingKind::Hint});
    }
  }
  if (setup.emailMatchVert >= 0 && setup.emailMatchVertTo < setup.emailMatchVert) {
    findings.problem("EMAILMATCHVERTTO", QStringLiteral("This range ends before it begins."));
  }
  if (setup.emailMatchHorizFrom >= 0 && setup.emailMatchHorizTo < setup.emailMatchHorizFrom) {
    findings.problem("EMAILMATCHHORIZTO", QStringLiteral("This range ends before it begins."));
  }
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
