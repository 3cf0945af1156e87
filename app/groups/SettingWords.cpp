#include "app/groups/SettingWords.h"

#include "app/dialogs/SettingUse.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "engine/setup/SplitSetup.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace folivex {

namespace {

/// By SplitMethod.
constexpr std::array splitWords = {
    "A document goes from a page with the words to the page before the next one.",
    "Pages stay together while the text that names the file is the same.",
    "A document goes from a page with the word at this place to the page before the next one.",
    "The word must stand at this place; pages stay together while the text that names the file is "
    "the same.",
    "A document ends with the page of the until words. Pages from there to the next match are in "
    "none.",
    "A document ends before the page that has the until word at its place; the next one begins "
    "there.",
    "Each page with the words is a document of its own.",
    "Each bookmark begins a document; no words are searched.",
    "Each bookmark of the top level begins a document; no words are searched.",
    "Each bookmark of the second level begins a document; no words are searched.",
};

/// By FileNameMethod.
constexpr std::array nameWords = {
    "Files are named after the word that was found.",
    "Files are named after the word behind the one that was found.",
    "Files are named after the number of their first page.",
    "Files are named after the numbers of their first and last page, such as 1-3.",
    "Files are named after the word at the position.",
    "Files are numbered: 000001, 000002 and so on.",
    "Files are named after the first word behind this text.",
    "Files are named after the line behind this text.",
    "Files are named after the line behind this text and the first line of the next page.",
    "Files are named after the lines of a list (Reports, below).",
    "Files are named after their bookmarks.",
};

QString sentence(const QStringList& parts) {
  return parts.join(QLatin1Char(' '));
}

} // namespace

QString splitMethodWords(const SplitSetup& setup) {
  return QString::fromLatin1(
      splitWords.at(static_cast<std::size_t>(splitMethodOf(setup.pageExtract))));
}

QString nameMethodWords(const SplitSetup& setup) {
  return QString::fromLatin1(nameWords.at(static_cast<std::size_t>(fileNameMethodOf(setup))));
}

QString mailWords(const SplitSetup& setup) {
  if (!setup.emailEnable) {
    const QSet<QString> own = ownSettings(setup);
    const bool isPrepared = std::ranges::any_of(
        own, [](const QString& key) { return key.startsWith(QLatin1String("EMAIL")); });
    return isPrepared ? QStringLiteral("Off; its settings are kept.")
                      : QStringLiteral("Outputs are not mailed.");
  }
  const QString to = setup.emailTest
                         ? QStringLiteral("A test: all mails go to %1")
                               .arg(setup.emailFrom.isEmpty() ? QStringLiteral("the From address")
                                                              : setup.emailFrom)
                         : QStringLiteral("Outputs are mailed to the addresses on their pages");
  return to + (setup.emailConfirm ? QStringLiteral("; you see the list first.")
                                  : QStringLiteral(", without asking."));
}

QString reportWords(const SplitSetup& setup) {
  const bool hasBoth = setup.reportOptionsTxt && setup.reportOptionsCsv;
  QStringList words = {hasBoth                  ? QStringLiteral("Text and CSV report")
                       : setup.reportOptionsTxt ? QStringLiteral("Text report")
                       : setup.reportOptionsCsv ? QStringLiteral("CSV report")
                                                : QStringLiteral("No report.")};
  if (setup.reportOptionsTxt || setup.reportOptionsCsv) {
    const QString& folder = setup.reportOptionsOutputFolder;
    words += setup.reportOptionsCurrent || folder.size() <= 1
                 ? QStringLiteral("beside the source.")
                 : QStringLiteral("in %1.").arg(folder);
  }
  if (!setup.reportUseFileList.isEmpty()) {
    words += QStringLiteral("Names from %1.").arg(setup.reportUseFileList);
  }
  if (!setup.reportRemoveChars.isEmpty()) {
    words += QStringLiteral("Left out of names: %1").arg(setup.reportRemoveChars);
  }
  if (setup.horizWordSpacing != defaultWordSpacing) {
    words += QStringLiteral("Gaps in words: %1.").arg(setup.horizWordSpacing);
  }
  return sentence(words);
}

QString otherWords(const SplitSetup& setup) {
  QStringList words;
  if (setup.otherSettingsRemoveFiles) {
    words += setup.splitToSource
                 ? QStringLiteral("Emptying the output folder is set, and not done beside the "
                                  "source.")
                 : QStringLiteral("The files in the output folder are deleted first.");
  }
  if (!setup.otherSettingsRemoveText.isEmpty()) {
    words += QStringLiteral("Left out of names: %1").arg(setup.otherSettingsRemoveText);
  }
  return words.isEmpty() ? QStringLiteral("Nothing is deleted or left out.") : sentence(words);
}

QString commandWords(const SplitSetup& setup) {
  const QString& command = setup.configExternalCommand;
  if (setup.configUseExternal) {
    return QStringLiteral("%1 writes the outputs.").arg(command);
  }
  return command.isEmpty() ? QStringLiteral("Folivex writes the outputs itself.")
                           : QStringLiteral("Off; %1 is kept.").arg(command);
}

} // namespace folivex
