#include "app/dialogs/SettingUse.h"

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"
#include "mail/OutlookMail.h"

#include <initializer_list>

namespace folivex {

namespace {

class IdleKeys {
public:
  void addUnless(bool isUsed, std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
      if (!isUsed) {
        m_keys += QString::fromLatin1(key);
      }
    }
  }
  const QSet<QString>& keys() const { return m_keys; }

private:
  QSet<QString> m_keys;
};

void addMatching(const SplitSetup& setup, IdleKeys& idle) {
  const bool words = matchesWords(setup);
  idle.addUnless(
      words, {"FINDSTRING", "IGNORECASE", "STARTFROMPAGE", "STARTENDPAGE", "OCRFIRST", "EXTRACT"});
  idle.addUnless(matchesAtPosition(setup), {"MATCHPOSH", "MATCHPOSV"});
  idle.addUnless(endsAtUntilWords(setup), {"EXTRACTUNTIL"});
  idle.addUnless(matchesAtPosition(setup) && endsAtUntilWords(setup),
                 {"UNTILMATCHPOSH", "UNTILMATCHPOSV"});
  const bool line = words && namesAfterText(fileNameMethodOf(setup.extract));
  idle.addUnless(line, {"EXTRACTFILENAME", "TAKENWORDSFORFILENAME", "UNTILHHPOSLESSTHAN",
                        "FIRSTCHAROFWORD", "ADDBWORDS"});
}

/// What means the same is written the same.
SplitSetup alike(SplitSetup setup) {
  for (QString* position : {&setup.matchPosH, &setup.matchPosV}) {
    if (position->trimmed() == QLatin1String("0")) {
      position->clear();
    }
  }
  setup.pageExtract = splitTraitsOf(setup.pageExtract).text;
  setup.extract = setup.extract.isEmpty() ? fileNameMethodTexts().front() : setup.extract;
  setup.startFromPage = setup.startFromPage <= 1 ? 0 : setup.startFromPage;
  setup.outputDir = setup.outputDir.isEmpty() ? defaultSetup().outputDir : setup.outputDir;
  return setup;
}

} // namespace

bool matchesWords(const SplitSetup& setup) {
  return !splitTraitsOf(setup.pageExtract).fromBookmarks;
}

bool matchesAtPosition(const SplitSetup& setup) {
  return splitTraitsOf(setup.pageExtract).atPosition;
}

bool endsAtUntilWords(const SplitSetup& setup) {
  return splitTraitsOf(setup.pageExtract).untilWord;
}

QSet<QString> idleSettings(const SplitSetup& setup) {
  IdleKeys idle;
  addMatching(setup, idle);
  idle.addUnless(!setup.useCurrent, {"FILENAME"});
  idle.addUnless(!setup.useSourceFileName, {"PREFIXFILENAME"});
  idle.addUnless(!setup.useSourceFileNamePost, {"POSTFIXFILENAME"});
  idle.addUnless(!setup.splitToSource, {"OUTPUTDIR", "OTHERSETTINGSREMOVEFILES"});
  idle.addUnless(!setup.reportOptionsCurrent, {"REPORTOPTIONSOUTPUTFOLDER"});
  idle.addUnless(setup.configUseExternal, {"CONFIGEXTERNALCOMMAND", "CONFIGEXTERNALPARAMS"});
  idle.addUnless(!setup.useOutlook,
                 {"EMAILSMTP", "EMAILLOGIN", "EMAILPASSWORD", "EMAILFROMNAME", "EMAILHTML"});
  idle.addUnless(setup.useOutlook, {"USEOUTLOOKAUTO"});
  // A setup from elsewhere may have it on: it must be possible to switch it off here.
  idle.addUnless(setup.useOutlook || outlookProblem().isEmpty(), {"USEOUTLOOK"});
  return idle.keys();
}

QSet<QString> ownSettings(const SplitSetup& setup) {
  const SplitSetup own = alike(setup);
  const SplitSetup plain = alike(defaultSetup());
  QSet<QString> keys;
  for (const SetupField& field : setupFields()) {
    if (valueOf(field, own) != valueOf(field, plain)) {
      keys += QString(field.key);
    }
  }
  return keys;
}

} // namespace folivex
