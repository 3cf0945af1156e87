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
    SetupField{"AUTOMATION"_key, AutomationKey{}, "", Plain, keep, readOnly},
    SetupField{"USECURRENT"_key, &S::useCurrent,
      "Split the PDF whose page is shown, in place of the file named above", NotUnattended},
    SetupField{"SPLITTOSOURCE"_key, &S::splitToSource,
      "Outputs go beside the PDF they come from"},
    SetupField{"ROTATED"_key, &S::rotated,
      "The pages lie on their side: horizontal and vertical position are exchanged"},
    SetupField{"CREATELIST"_key, &S::createList,
      "Write a list of the outputs for a later split, and no PDF"},
    SetupField{"KEEPBOOKMARKS"_key, &S::keepBookmarks,
      "Outputs keep the bookmarks into their pages"},
    SetupField{"USESOURCEFILENAME"_key, &S::useSourceFileName,
      "The name of the source is the prefix"},
    SetupField{"USESOURCEFILENAMEPOST"_key, &S::useSourceFileNamePost,
      "The name of the source is the postfix"},
    SetupField{"ALWAYSOVERWRITE"_key, &S::alwaysOverwrite,
      "An output of the same name is replaced. With neither this nor append, _part002 and so on "
      "is added to the name"},
    SetupField{"ALWAYSAPPEND"_key, &S::alwaysAppend,
      "Pages go to the end of an output of the same name"},
    SetupField{"IGNORECASE"_key, &S::ignoreCase,
      "Take capital and small letters A to Z as the same"},
    SetupField{"OCRFIRST"_key, &S::ocrFirst,
      "Run text recognition over the PDF before its words are read, for scanned pages"},
    SetupField{"ADDSPACE"_key, AddSpaceKey{}, "", Plain, keep, readOnly},
    SetupField{"ADDBWORDS"_key, &S::addBWords,
      "What stands between two words of a name, such as _ or a blank"},
    SetupField{"FILENAME"_key, &S::fileName,
      "The PDF to split. A PDF dropped on the window stands here at once"},
    SetupField{"EXTRACT"_key, &S::extract,
      "What an output file is named after"},
    SetupField{"TAKENWORDSFORFILENAME"_key, &S::takenWordsForFileName,
      "How many words of the line a name takes at most; 999 for all"},
    SetupField{"UNTILHHPOSLESSTHAN"_key, &S::untilHHPosLessThan,
      "Words are taken only while they begin left of this position; 0 for no limit, 9999 for "
      "the whole line"},
    SetupField{"FIRSTCHAROFWORD"_key, &S::firstCharOfWord,
      "Stop at the first word that begins with this; it is not taken"},
    SetupField{"ANYCHAROFWORD"_key, &S::anyCharOfWord,
      "Cut the name where this text stands. [num] cuts at the first digit, [num>char3] at the "
      "first one behind three characters, [char>4] after four characters"},
    SetupField{"STARTFROMPAGE"_key, &S::startFromPage,
      "First page of the PDF that is looked at; 0 and 1 both mean the first"},
    SetupField{"STARTENDPAGE"_key, &S::startEndPage,
      "Last page that is looked at. 0 means to the end; -2 leaves two pages off the end"},
    SetupField{"OFFSETFIRST"_key, &S::offsetFirst,
      "Number of pages left out at the front of each document"},
    SetupField{"PAGEEXTRACT"_key, &S::pageExtract,
      "Where a document begins and where it ends. With bookmarks no words are searched"},
    SetupField{"FINDSTRING"_key, &S::findString,
      "The word, or words one after the other, that a document begins with. Whole words only. "
      "Leave blank to match on all words when using h,v match. [WORD4] takes the fourth word of "
      "each page"},
    SetupField{"PREFIXFILENAME"_key, &S::prefixFileName,
      "Put in front of every name. Tokens in square brackets are replaced"},
    SetupField{"POSTFIXFILENAME"_key, &S::postfixFileName,
      "Put behind every name. Tokens in square brackets are replaced"},
    SetupField{"OUTPUTDIR"_key, &S::outputDir,
      "Folder of the outputs; it is made when it is missing"},
    SetupField{"EXTRACTUNTIL"_key, &S::extractUntil,
      "The word or words that end a document"},
    SetupField{"EXTRACTFILENAME"_key, &S::extractFileName,
      "The name is taken from the words behind this text"},
    SetupField{"MATCHPOSH"_key, &S::matchPosH,
      "Distance of the word from the left: 320, a range 320-325, or an alternative 320|400. 0 "
      "means anywhere; -3 any word of three characters"},
    SetupField{"MATCHPOSV"_key, &S::matchPosV,
      "Distance of the word from the top, written as for h"},
    SetupField{"UNTILMATCHPOSH"_key, &S::untilMatchPosH,
      "Distance of the until word from the left; 0 means anywhere, -3 any word of three "
      "characters"},
    SetupField{"UNTILMATCHPOSV"_key, &S::untilMatchPosV,
      "Distance of the until word from the top, written as for h"},
    SetupField{"STRIPEND"_key, &S::stripEnd, "", WorkingOnly},
    SetupField{"OFFSETFIRST"_key, &S::offsetFirst},
    SetupField{"REPORTOPTIONSTXT"_key, &S::reportOptionsTxt,
      "Each run leaves a report to read", WorkingOnly},
    SetupField{"REPORTOPTIONSCSV"_key, &S::reportOptionsCsv,
      "Each run leaves a report for a spreadsheet", WorkingOnly},
    SetupField{"REPORTOPTIONSCURRENT"_key, &S::reportOptionsCurrent,
      "Reports go beside the source, or to the output folder where that cannot be written to", WorkingOnly},
    SetupField{"REPORTOPTIONSOUTPUTFOLDER"_key, &S::reportOptionsOutputFolder,
      "Folder of the reports when they do not go beside the source", WorkingOnly, keep, readWrite, pathCapacity},
    SetupField{"REPORTUSEFILELIST"_key, &S::reportUseFileList,
      "Text file with one name a line, for the method that names outputs after a list", WorkingOnly, keep, readWrite, pathCapacity},
    SetupField{"REPORTREMOVECHARS"_key, &S::reportRemoveChars,
      "These characters are left out of every name", WorkingOnly, keep, readWrite, pathCapacity},
    SetupField{"HORIZWORDSPACING"_key, &S::horizWordSpacing,
      "How wide a gap may be inside a word. Raise it when words fall apart, lower it when they "
      "run together", WorkingOnly},
    SetupField{"PDFPASSWORD"_key, &S::pdfPassword,
      "Password that opens the PDF. Leave it empty when it opens without one"},
    SetupField{"CONFIGUSEEXTERNAL"_key, &S::configUseExternal,
      "Another program writes the outputs", Plain, reset},
    SetupField{"CONFIGEXTERNALCOMMAND"_key, &S::configExternalCommand,
      "The program that is started for each output", Plain, reset},
    SetupField{"CONFIGEXTERNALPARAMS"_key, &S::configExternalParams,
      "Its parameters. [IN] is the source, [OUT] the output, [START] and [END] its first and "
      "last page", Plain, reset},
    SetupField{"EMAILSMTP"_key, &S::emailSmtp,
      "Mail server. Put ssl: or tls: in front for an encrypted connection, and a colon and the "
      "port behind if it is not the usual one", Plain, reset},
    SetupField{"EMAILFROM"_key, &S::emailFrom,
      "Address that mails come from, and that test mails go to", Plain, reset},
    SetupField{"EMAILINVOICECC"_key, &S::emailInvoiceCc,
      "A copy of each mail goes here; several addresses with commas between", Plain, reset},
    SetupField{"EMAILFROMNAME"_key, &S::emailFromName,
      "Name shown beside the From address", Plain, reset},
    SetupField{"EMAILSUBJECT"_key, &S::emailSubject,
      "Subject of every mail", Plain, reset},
    SetupField{"EMAILLOGIN"_key, &S::emailLogin,
      "Name to log in to the mail server; empty for a server that asks for none", Plain, reset},
    SetupField{"EMAILPASSWORD"_key, &S::emailPassword,
      "Password for the mail server. A setup file keeps it as plain text", Plain, reset},
    SetupField{"EMAILLOGFILE"_key, &S::emailLogFile,
      "Each mail sent, and each that failed, leaves a line in this file", Plain, reset},
    SetupField{"EMAILMSG"_key, &S::emailMsg,
      "Text of every mail", Escaped, reset},
    SetupField{"EMAILHTML"_key, &S::emailHtml,
      "The text is HTML", Plain, reset},
    SetupField{"EMAILENABLE"_key, &S::emailEnable,
      "After a split the outputs can be sent to the addresses on their pages", Plain, reset},
    SetupField{"EMAILCONFIRM"_key, &S::emailConfirm,
      "The list of mails is shown before any is sent", Plain, reset},
    SetupField{"EMAILTEST"_key, &S::emailTest,
      "No mail goes to the addresses found: all go to the From address", Plain, reset},
    SetupField{"EMAILPAUSE"_key, &S::emailPause,
      "Milliseconds to wait before each mail, for servers that limit them"},
    SetupField{"EMAILMATCHVERT"_key, &S::emailMatchVert,
      "An address is looked for from this distance from the top; -1 for any position", Plain, reset},
    SetupField{"EMAILMATCHVERTTO"_key, &S::emailMatchVertTo,
      "An address is looked for down to this distance from the top", Plain, reset},
    SetupField{"EMAILMATCHHORIZFROM"_key, &S::emailMatchHorizFrom,
      "An address is looked for from this distance from the left", Plain, reset},
    SetupField{"EMAILMATCHHORIZTO"_key, &S::emailMatchHorizTo,
      "An address is looked for up to this distance from the left", Plain, reset},
    SetupField{"USEOUTLOOK"_key, &S::useOutlook,
      "Hand the mails to the mail program of this computer", Plain, reset},
    // Written for other readers of the file; here the box is off after every load.
    SetupField{"USEOUTLOOKAUTO"_key, &S::useOutlookAuto,
      "Send them at once, without opening each first", Plain, reset, writeOnly},
    SetupField{"EMAILHORIZAFTERTEXT"_key, &S::emailHorizAfterText,
      "The address stands behind this text", Plain, reset},
    SetupField{"EMAILHORIZBEFORETEXT"_key, &S::emailHorizBeforeText,
      "The address stands before this text", Plain, reset},
    SetupField{"OTHERSETTINGSREMOVEFILES"_key, &S::otherSettingsRemoveFiles,
      "Every file in the output folder is deleted when a run begins; its folders stay"},
    SetupField{"OTHERSETTINGSREMOVETEXT"_key, &S::otherSettingsRemoveText,
      "Texts that are left out of names, with | between them"},
};
// clang-format on

} // namespace

std::span<const SetupField> setupFields() {
  return fields;
}

QString valueOf(const SetupField& field, const SplitSetup& setup) {
  return std::visit(
      [&](auto member) {
        using Member = decltype(member);
        if constexpr (std::is_same_v<Member, QString SplitSetup::*>) {
          return setup.*member;
        } else if constexpr (std::is_member_object_pointer_v<Member>) {
          return QString::number(setup.*member);
        } else {
          return QString();
        }
      },
      field.member);
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
