#include "app/dialogs/SettingUse.h"

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"

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
  return idle.keys();
}

} // namespace folivex
