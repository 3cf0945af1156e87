// SplitSetup: every setting of one split run.
#pragma once

#include <QString>

namespace folivex {

/// Joining tolerance of words that takes effect when no setup says otherwise.
inline constexpr double defaultWordSpacing = 1.02;

/// Every setting of one setup. The members stand in the order in which a setup file holds them, and
/// each is named after its key (`USECURRENT` is useCurrent); SetupFields.h ties the two together.
///
/// A default-constructed record holds the values that take effect when no setup file was read, but
/// for `outputDir`, whose default depends on the system (see defaultSetup()).
///
/// Units: page numbers count from 1, positions are the text library's points, pauses milliseconds.
struct SplitSetup {
  bool useCurrent = false;
  bool splitToSource = false;
  bool rotated = false;
  bool createList = false;
  bool keepBookmarks = false;
  bool useSourceFileName = false;
  bool useSourceFileNamePost = false;
  bool alwaysOverwrite = false;
  bool alwaysAppend = false;
  bool ignoreCase = false;
  bool ocrFirst = false;
  QString addBWords;
  QString fileName;
  QString extract;
  int takenWordsForFileName = 999;
  int untilHHPosLessThan = 9999;
  QString firstCharOfWord;
  QString anyCharOfWord;
  int startFromPage = 0;
  int startEndPage = 0;
  int offsetFirst = 0;
  QString pageExtract;
  QString findString = QStringLiteral("account:");
  QString prefixFileName = QStringLiteral("extract_");
  QString postfixFileName;
  QString outputDir;
  QString extractUntil;
  QString extractFileName;
  QString matchPosH;
  QString matchPosV;
  int untilMatchPosH = 0;
  int untilMatchPosV = 0;
  int stripEnd = 0;
  bool reportOptionsTxt = true;
  bool reportOptionsCsv = true;
  bool reportOptionsCurrent = true;
  QString reportOptionsOutputFolder; ///< at most 255 characters
  QString reportUseFileList;         ///< at most 255 characters
  QString reportRemoveChars;         ///< at most 255 characters
  double horizWordSpacing = defaultWordSpacing;
  QString pdfPassword;
  bool configUseExternal = false;
  QString configExternalCommand;
  QString configExternalParams;
  QString emailSmtp;
  QString emailFrom;
  QString emailInvoiceCc;
  QString emailFromName;
  QString emailSubject;
  QString emailLogin;
  QString emailPassword;
  QString emailLogFile;
  QString emailMsg; ///< line ends are CR LF
  bool emailHtml = false;
  bool emailEnable = false;
  bool emailConfirm = true;
  bool emailTest = true;
  int emailPause = 0;
  int emailMatchVert = 0;
  int emailMatchVertTo = 99999;
  int emailMatchHorizFrom = 0;
  int emailMatchHorizTo = 99999;
  bool useOutlook = false;
  bool useOutlookAuto = false;
  QString emailHorizAfterText;
  QString emailHorizBeforeText;
  bool otherSettingsRemoveFiles = false;
  QString otherSettingsRemoveText;

  bool operator==(const SplitSetup&) const = default;
};

/// The record as it is before any setup file was read, with this system's output folder.
SplitSetup defaultSetup();

/// The folder of the outputs of `source`: `SPLITTOSOURCE` stands above `OUTPUTDIR`, and no folder
/// means the default.
QString outputFolderOf(const SplitSetup& setup, const QString& source);

/// The setup of a run: its source and its output folder as they are meant.
SplitSetup runSetup(SplitSetup setup);

/// Empty, or why these settings cannot be run together.
QString contradictionIn(const SplitSetup& setup);

} // namespace folivex
