#include "engine/setup/SetupFields.h"

#include <algorithm>
#include <array>

namespace folivex {

namespace {

using S = SplitSetup;
using enum FieldRule;

constexpr auto reset = FieldReset::Default;
constexpr auto keep = FieldReset::Keep;
constexpr auto readWrite = FieldUse::ReadWrite;
constexpr auto readOnly = FieldUse::ReadOnly;
constexpr auto writeOnly = FieldUse::WriteOnly;
constexpr int pathCapacity = 255;

constexpr QLatin1StringView operator""_key(const char* text, std::size_t length) {
  return QLatin1StringView(text, static_cast<qsizetype>(length));
}

// clang-format off
constexpr std::array fields = {
    SetupField{"AUTOMATION"_key, AutomationKey{}, Plain, keep, readOnly},
    SetupField{"USECURRENT"_key, &S::useCurrent, NotUnattended},
    SetupField{"SPLITTOSOURCE"_key, &S::splitToSource},
    SetupField{"ROTATED"_key, &S::rotated},
    SetupField{"CREATELIST"_key, &S::createList},
    SetupField{"KEEPBOOKMARKS"_key, &S::keepBookmarks},
    SetupField{"USESOURCEFILENAME"_key, &S::useSourceFileName},
    SetupField{"USESOURCEFILENAMEPOST"_key, &S::useSourceFileNamePost},
    SetupField{"ALWAYSOVERWRITE"_key, &S::alwaysOverwrite},
    SetupField{"ALWAYSAPPEND"_key, &S::alwaysAppend},
    SetupField{"IGNORECASE"_key, &S::ignoreCase},
    SetupField{"OCRFIRST"_key, &S::ocrFirst},
    SetupField{"ADDSPACE"_key, AddSpaceKey{}, Plain, keep, readOnly},
    SetupField{"ADDBWORDS"_key, &S::addBWords},
    SetupField{"FILENAME"_key, &S::fileName},
    SetupField{"EXTRACT"_key, &S::extract},
    SetupField{"TAKENWORDSFORFILENAME"_key, &S::takenWordsForFileName},
    SetupField{"UNTILHHPOSLESSTHAN"_key, &S::untilHHPosLessThan},
    SetupField{"FIRSTCHAROFWORD"_key, &S::firstCharOfWord},
    SetupField{"ANYCHAROFWORD"_key, &S::anyCharOfWord},
    SetupField{"STARTFROMPAGE"_key, &S::startFromPage},
    SetupField{"STARTENDPAGE"_key, &S::startEndPage},
    SetupField{"OFFSETFIRST"_key, &S::offsetFirst},
    SetupField{"PAGEEXTRACT"_key, &S::pageExtract},
    SetupField{"FINDSTRING"_key, &S::findString},
    SetupField{"PREFIXFILENAME"_key, &S::prefixFileName},
    SetupField{"POSTFIXFILENAME"_key, &S::postfixFileName},
    SetupField{"OUTPUTDIR"_key, &S::outputDir},
    SetupField{"EXTRACTUNTIL"_key, &S::extractUntil},
    SetupField{"EXTRACTFILENAME"_key, &S::extractFileName},
    SetupField{"MATCHPOSH"_key, &S::matchPosH},
    SetupField{"MATCHPOSV"_key, &S::matchPosV},
    SetupField{"UNTILMATCHPOSH"_key, &S::untilMatchPosH},
    SetupField{"UNTILMATCHPOSV"_key, &S::untilMatchPosV},
    SetupField{"STRIPEND"_key, &S::stripEnd, WorkingOnly},
    SetupField{"OFFSETFIRST"_key, &S::offsetFirst},
    SetupField{"REPORTOPTIONSTXT"_key, &S::reportOptionsTxt, WorkingOnly},
    SetupField{"REPORTOPTIONSCSV"_key, &S::reportOptionsCsv, WorkingOnly},
    SetupField{"REPORTOPTIONSCURRENT"_key, &S::reportOptionsCurrent, WorkingOnly},
    SetupField{"REPORTOPTIONSOUTPUTFOLDER"_key, &S::reportOptionsOutputFolder, WorkingOnly, keep, readWrite, pathCapacity},
    SetupField{"REPORTUSEFILELIST"_key, &S::reportUseFileList, WorkingOnly, keep, readWrite, pathCapacity},
    SetupField{"REPORTREMOVECHARS"_key, &S::reportRemoveChars, WorkingOnly, keep, readWrite, pathCapacity},
    SetupField{"HORIZWORDSPACING"_key, &S::horizWordSpacing, WorkingOnly},
    SetupField{"PDFPASSWORD"_key, &S::pdfPassword},
    SetupField{"CONFIGUSEEXTERNAL"_key, &S::configUseExternal, Plain, reset},
    SetupField{"CONFIGEXTERNALCOMMAND"_key, &S::configExternalCommand, Plain, reset},
    SetupField{"CONFIGEXTERNALPARAMS"_key, &S::configExternalParams, Plain, reset},
    SetupField{"EMAILSMTP"_key, &S::emailSmtp, Plain, reset},
    SetupField{"EMAILFROM"_key, &S::emailFrom, Plain, reset},
    SetupField{"EMAILINVOICECC"_key, &S::emailInvoiceCc, Plain, reset},
    SetupField{"EMAILFROMNAME"_key, &S::emailFromName, Plain, reset},
    SetupField{"EMAILSUBJECT"_key, &S::emailSubject, Plain, reset},
    SetupField{"EMAILLOGIN"_key, &S::emailLogin, Plain, reset},
    SetupField{"EMAILPASSWORD"_key, &S::emailPassword, Plain, reset},
    SetupField{"EMAILLOGFILE"_key, &S::emailLogFile, Plain, reset},
    SetupField{"EMAILMSG"_key, &S::emailMsg, Escaped, reset},
    SetupField{"EMAILHTML"_key, &S::emailHtml, Plain, reset},
    SetupField{"EMAILENABLE"_key, &S::emailEnable, Plain, reset},
    SetupField{"EMAILCONFIRM"_key, &S::emailConfirm, Plain, reset},
    SetupField{"EMAILTEST"_key, &S::emailTest, Plain, reset},
    SetupField{"EMAILPAUSE"_key, &S::emailPause},
    SetupField{"EMAILMATCHVERT"_key, &S::emailMatchVert, Plain, reset},
    SetupField{"EMAILMATCHVERTTO"_key, &S::emailMatchVertTo, Plain, reset},
    SetupField{"EMAILMATCHHORIZFROM"_key, &S::emailMatchHorizFrom, Plain, reset},
    SetupField{"EMAILMATCHHORIZTO"_key, &S::emailMatchHorizTo, Plain, reset},
    SetupField{"USEOUTLOOK"_key, &S::useOutlook, Plain, reset},
    // Written for other readers of the file; here the box is off after every load.
    SetupField{"USEOUTLOOKAUTO"_key, &S::useOutlookAuto, Plain, reset, writeOnly},
    SetupField{"EMAILHORIZAFTERTEXT"_key, &S::emailHorizAfterText, Plain, reset},
    SetupField{"EMAILHORIZBEFORETEXT"_key, &S::emailHorizBeforeText, Plain, reset},
    SetupField{"OTHERSETTINGSREMOVEFILES"_key, &S::otherSettingsRemoveFiles},
    SetupField{"OTHERSETTINGSREMOVETEXT"_key, &S::otherSettingsRemoveText},
};
// clang-format on

} // namespace

std::span<const SetupField> setupFields() {
  return fields;
}

void copySetupField(const SetupField& field, const SplitSetup& from, SplitSetup& to) {
  std::visit(
      [&](auto member) {
        if constexpr (std::is_member_object_pointer_v<decltype(member)>) {
          to.*member = from.*member;
        }
      },
      field.member);
}

void commitSetup(const SplitSetup& edited, SplitSetup& working) {
  for (const SetupField& field : fields) {
    if (field.rule != WorkingOnly) {
      copySetupField(field, edited, working);
    }
  }
}

void resetLoadedFields(SplitSetup& setup) {
  const SplitSetup defaults;
  for (const SetupField& field : fields) {
    if (field.reset == FieldReset::Default) {
      copySetupField(field, defaults, setup);
    }
  }
}

} // namespace folivex
