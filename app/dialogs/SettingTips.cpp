#include "app/dialogs/SettingTips.h"

#include <QHash>

namespace folivex {

namespace {

const QHash<QString, QString>& tips() {
  static const QHash<QString, QString> texts = {
      {QStringLiteral("USECURRENT"),
       QStringLiteral("Split the PDF that is open in the page viewer, in place of the file below")},
      {QStringLiteral("FILENAME"),
       QStringLiteral("The PDF to split. A PDF dropped on the window stands here at once")},
      {QStringLiteral("PDFPASSWORD"),
       QStringLiteral("Password that opens the PDF. Leave it empty when it opens without one")},
      {QStringLiteral("STARTFROMPAGE"),
       QStringLiteral("First page of the PDF that is looked at; 0 and 1 both mean the first")},
      {QStringLiteral("STARTENDPAGE"),
       QStringLiteral("Last page that is looked at. 0 means to the end; -2 leaves two pages off "
                      "the end")},
      {QStringLiteral("OCRFIRST"),
       QStringLiteral("Run text recognition over the PDF before its words are read, for scanned "
                      "pages")},
      {QStringLiteral("ROTATED"),
       QStringLiteral(
           "The pages lie on their side: horizontal and vertical position are exchanged")},
      {QStringLiteral("FINDSTRING"),
       QStringLiteral("The word, or words one after the other, that a document begins with. Whole "
                      "words only. Leave blank to match on all words when using h,v match. [WORD4] "
                      "takes the fourth word of each page")},
      {QStringLiteral("IGNORECASE"),
       QStringLiteral("Take capital and small letters A to Z as the same")},
      {QStringLiteral("MATCHPOSH"),
       QStringLiteral("Distance of the word from the left: 320, a range 320-325, or an alternative "
                      "320|400. 0 means anywhere; -3 any word of three characters")},
      {QStringLiteral("MATCHPOSV"),
       QStringLiteral("Distance of the word from the top, written as for h")},
      {QStringLiteral("EXTRACTUNTIL"), QStringLiteral("The word or words that end a document")},
      {QStringLiteral("UNTILMATCHPOSH"),
       QStringLiteral("Distance of the until word from the left; 0 means anywhere, -3 any word of "
                      "three characters")},
      {QStringLiteral("UNTILMATCHPOSV"),
       QStringLiteral("Distance of the until word from the top, written as for h")},
      {QStringLiteral("PAGEEXTRACT"),
       QStringLiteral("Where a document begins and where it ends. With bookmarks no words are "
                      "searched")},
      {QStringLiteral("OFFSETFIRST"),
       QStringLiteral("Number of pages left out at the front of each document")},
      {QStringLiteral("EXTRACT"), QStringLiteral("What an output file is named after")},
      {QStringLiteral("EXTRACTFILENAME"),
       QStringLiteral("The name is taken from the words behind this text")},
      {QStringLiteral("TAKENWORDSFORFILENAME"),
       QStringLiteral("How many words of the line a name takes at most; 999 for all")},
      {QStringLiteral("UNTILHHPOSLESSTHAN"),
       QStringLiteral("Words are taken only while they begin left of this position; 0 for "
                      "no limit, 9999 for the whole line")},
      {QStringLiteral("FIRSTCHAROFWORD"),
       QStringLiteral("Stop at the first word that begins with this; it is not taken")},
      {QStringLiteral("ANYCHAROFWORD"),
       QStringLiteral("Cut the name where this text stands. [num] cuts at the first digit, "
                      "[num>char3] at the first one behind three characters, [char>4] after "
                      "four characters")},
      {QStringLiteral("ADDBWORDS"),
       QStringLiteral("What stands between two words of a name, such as _ or a blank")},
      {QStringLiteral("PREFIXFILENAME"),
       QStringLiteral("Put in front of every name. Tokens in square brackets are replaced")},
      {QStringLiteral("POSTFIXFILENAME"),
       QStringLiteral("Put behind every name. Tokens in square brackets are replaced")},
      {QStringLiteral("USESOURCEFILENAME"), QStringLiteral("The name of the source is the prefix")},
      {QStringLiteral("USESOURCEFILENAMEPOST"),
       QStringLiteral("The name of the source is the postfix")},
      {QStringLiteral("SPLITTOSOURCE"), QStringLiteral("Outputs go beside the PDF they come from")},
      {QStringLiteral("OUTPUTDIR"),
       QStringLiteral("Folder of the outputs; it is made when it is missing")},
      {QStringLiteral("ALWAYSOVERWRITE"),
       QStringLiteral("An output of the same name is replaced. With neither this nor append, "
                      "_part002 and so on is added to the name")},
      {QStringLiteral("ALWAYSAPPEND"),
       QStringLiteral("Pages go to the end of an output of the same name")},
      {QStringLiteral("CREATELIST"),
       QStringLiteral("Write a list of the outputs for a later split, and no PDF")},
      {QStringLiteral("KEEPBOOKMARKS"),
       QStringLiteral("Outputs keep the bookmarks into their pages")},
      {QStringLiteral("REPORTOPTIONSTXT"), QStringLiteral("Each run leaves a report to read")},
      {QStringLiteral("REPORTOPTIONSCSV"),
       QStringLiteral("Each run leaves a report for a spreadsheet")},
      {QStringLiteral("REPORTOPTIONSCURRENT"),
       QStringLiteral("Reports go beside the source, or to the output folder where that "
                      "cannot be written to")},
      {QStringLiteral("REPORTOPTIONSOUTPUTFOLDER"),
       QStringLiteral("Folder of the reports when they do not go beside the source")},
      {QStringLiteral("REPORTUSEFILELIST"),
       QStringLiteral("Text file with one name a line, for the method that names outputs "
                      "after a list")},
      {QStringLiteral("REPORTREMOVECHARS"),
       QStringLiteral("These characters are left out of every name")},
      {QStringLiteral("HORIZWORDSPACING"),
       QStringLiteral("How wide a gap may be inside a word. Raise it when words fall apart, "
                      "lower it when they run together")},
      {QStringLiteral("CONFIGUSEEXTERNAL"), QStringLiteral("Another program writes the outputs")},
      {QStringLiteral("CONFIGEXTERNALCOMMAND"),
       QStringLiteral("The program that is started for each output")},
      {QStringLiteral("CONFIGEXTERNALPARAMS"),
       QStringLiteral("Its parameters. [IN] is the source, [OUT] the output, [START] and "
                      "[END] its first and last page")},
      {QStringLiteral("EMAILSMTP"),
       QStringLiteral("Mail server. Put ssl: or tls: in front for an encrypted connection, and a "
                      "colon and the port behind if it is not the usual one")},
      {QStringLiteral("EMAILFROM"),
       QStringLiteral("Address that mails come from, and that test mails go to")},
      {QStringLiteral("EMAILINVOICECC"),
       QStringLiteral("A copy of each mail goes here; several addresses with commas between")},
      {QStringLiteral("EMAILFROMNAME"), QStringLiteral("Name shown beside the From address")},
      {QStringLiteral("EMAILSUBJECT"), QStringLiteral("Subject of every mail")},
      {QStringLiteral("EMAILLOGIN"),
       QStringLiteral("Name to log in to the mail server; empty for a server that asks for none")},
      {QStringLiteral("EMAILPASSWORD"),
       QStringLiteral("Password for the mail server. A setup file keeps it as plain text")},
      {QStringLiteral("EMAILLOGFILE"),
       QStringLiteral("Each mail sent, and each that failed, leaves a line in this file")},
      {QStringLiteral("EMAILMSG"), QStringLiteral("Text of every mail")},
      {QStringLiteral("EMAILHTML"), QStringLiteral("The text is HTML")},
      {QStringLiteral("EMAILENABLE"),
       QStringLiteral("After a split the outputs can be sent to the addresses on their pages")},
      {QStringLiteral("EMAILCONFIRM"),
       QStringLiteral("The list of mails is shown before any is sent")},
      {QStringLiteral("EMAILTEST"),
       QStringLiteral("No mail goes to the addresses found: all go to the From address")},
      {QStringLiteral("EMAILPAUSE"),
       QStringLiteral("Milliseconds to wait before each mail, for servers that limit them")},
      {QStringLiteral("EMAILMATCHVERT"),
       QStringLiteral("An address is looked for from this distance from the top; -1 for any "
                      "position")},
      {QStringLiteral("EMAILMATCHVERTTO"),
       QStringLiteral("An address is looked for down to this distance from the top")},
      {QStringLiteral("EMAILMATCHHORIZFROM"),
       QStringLiteral("An address is looked for from this distance from the left")},
      {QStringLiteral("EMAILMATCHHORIZTO"),
       QStringLiteral("An address is looked for up to this distance from the left")},
      {QStringLiteral("USEOUTLOOK"),
       QStringLiteral("Hand the mails to the mail program of this computer")},
      {QStringLiteral("USEOUTLOOKAUTO"),
       QStringLiteral("Send them at once, without opening each first")},
      {QStringLiteral("EMAILHORIZAFTERTEXT"),
       QStringLiteral("The address stands behind this text")},
      {QStringLiteral("EMAILHORIZBEFORETEXT"),
       QStringLiteral("The address stands before this text")},
      {QStringLiteral("OTHERSETTINGSREMOVEFILES"),
       QStringLiteral("Every file in the output folder is deleted when a run begins; "
                      "its folders stay")},
      {QStringLiteral("OTHERSETTINGSREMOVETEXT"),
       QStringLiteral("Texts that are left out of names, with | between them")},
  };
  return texts;
}

} // namespace

QString settingTip(const QString& key) {
  return tips().value(key);
}

} // namespace folivex
