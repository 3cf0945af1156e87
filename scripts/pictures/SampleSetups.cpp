#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "scripts/pictures/Camera.h"

namespace folivex::pictures {

SplitSetup firstSplit(const QString& source) {
  SplitSetup setup = defaultSetup();
  setup.fileName = source;
  setup.findString = QStringLiteral("Account:");
  setup.pageExtract = splitMethodTexts()[0];
  setup.extract = fileNameMethodTexts()[1];
  setup.prefixFileName = QStringLiteral("statement_");
  setup.outputDir = shownFolder() + QStringLiteral("out");
  return setup;
}

SplitSetup byPosition() {
  SplitSetup setup = defaultSetup();
  setup.fileName = QStringLiteral("/srv/scans/2026/march/statements-of-the-month.pdf");
  setup.outputDir = QStringLiteral("/srv/split/2026/march");
  setup.findString = QStringLiteral("Account:");
  setup.pageExtract = splitMethodTexts()[2];
  setup.extract = fileNameMethodTexts()[7];
  setup.extractFileName = QStringLiteral("Account:");
  setup.matchPosH = QStringLiteral("397-399");
  setup.matchPosV = QStringLiteral("117|120");
  setup.addBWords = QStringLiteral("_");
  setup.prefixFileName = QStringLiteral("[YYYY]-[MM]_");
  setup.emailSmtp = QStringLiteral("tls:smtp.example.com:587");
  setup.emailFrom = QStringLiteral("billing@example.com");
  setup.emailLogin = QStringLiteral("billing");
  setup.emailPassword = QStringLiteral("secret");
  setup.emailSubject = QStringLiteral("Your statement");
  setup.emailMsg = QStringLiteral("Dear customer,\r\n\r\nyour statement is attached.");
  setup.emailEnable = true;
  return setup;
}

SplitSetup withFaults() {
  SplitSetup setup = byPosition();
  setup.matchPosH = QStringLiteral("left");
  setup.findString = QStringLiteral("Account number");
  setup.fileName = QStringLiteral("/no/such/file.pdf");
  setup.prefixFileName = QStringLiteral("[DATE]_");
  setup.otherSettingsRemoveFiles = true;
  setup.otherSettingsRemoveText = QStringLiteral("Ltd|Inc.");
  setup.emailFrom = QStringLiteral("billing");
  return setup;
}

} // namespace folivex::pictures
