#include "app/dialogs/SettingUse.h"

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"
#include "mail/OutlookMail.h"

namespace folivex {

namespace {

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
  QSet<QString> idle;
  const auto unless = [&idle](bool isUsed, const char* keys) {
    const QStringList all = QString::fromLatin1(keys).split(u' ');
    idle += isUsed ? QSet<QString>() : QSet<QString>(all.begin(), all.end());
  };
  const bool words = matchesWords(setup);
  unless(words, "FINDSTRING IGNORECASE STARTFROMPAGE STARTENDPAGE OCRFIRST EXTRACT");
  unless(matchesAtPosition(setup), "MATCHPOSH MATCHPOSV");
  unless(endsAtUntilWords(setup), "EXTRACTUNTIL");
  unless(matchesAtPosition(setup) && endsAtUntilWords(setup), "UNTILMATCHPOSH UNTILMATCHPOSV");
  unless(words && namesAfterText(fileNameMethodOf(setup.extract)),
         "EXTRACTFILENAME TAKENWORDSFORFILENAME UNTILHHPOSLESSTHAN FIRSTCHAROFWORD ADDBWORDS");
  unless(!setup.useCurrent, "FILENAME");
  unless(!setup.useSourceFileName, "PREFIXFILENAME");
  unless(!setup.useSourceFileNamePost, "POSTFIXFILENAME");
  unless(!setup.splitToSource, "OUTPUTDIR OTHERSETTINGSREMOVEFILES");
  unless(!setup.reportOptionsCurrent, "REPORTOPTIONSOUTPUTFOLDER");
  unless(setup.configUseExternal, "CONFIGEXTERNALCOMMAND CONFIGEXTERNALPARAMS");
  unless(!setup.useOutlook, "EMAILSMTP EMAILLOGIN EMAILPASSWORD EMAILFROMNAME");
  unless(setup.useOutlook, "USEOUTLOOKAUTO");
  // A setup from elsewhere may have it on: it must be possible to switch it off here.
  unless(setup.useOutlook || outlookProblem().isEmpty(), "USEOUTLOOK");
  return idle;
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
