#include "app/groups/SettingWords.h"
#include "app/groups/SetupGroup.h"
#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"

#include <QCheckBox>
#include <QComboBox>

namespace folivex {

namespace {

using S = SplitSetup;

constexpr int most = std::numeric_limits<int>::max();

/// Choosing the one gives up the other. Only a click does: a setup file may have both.
void exclude(QCheckBox* one, QCheckBox* other) {
  QObject::connect(one, &QCheckBox::clicked, other, [other](bool isChecked) {
    if (isChecked) {
      other->setChecked(false);
    }
  });
}

void buildSource(SetupGroup& group) {
  FormGrid front = group.front();
  front.row("File&name:").text(&S::fileName, Shown::End);
  front.browse({.name = "browseSource",
                .toolTip = "Choose the PDF to split",
                .filter = "PDF files (*.pdf *.PDF);;All files (*)",
                .memoryKey = "folders/source"});
  FormGrid more = group.more("moreOfSource");
  more.wide().box(&S::useCurrent, "&Use current open PDF document");
  more.row("Password:").text(&S::pdfPassword, Shown::Never);
  more.note(QStringLiteral("(optional PDF open password)"));
  more.row("Start from page:").whole(&S::startFromPage);
  more.before("to").whole(&S::startEndPage).called("Last page");
  more.hint("lastPageHint", "(0 is to the end)");
  more.wide().box(&S::ocrFirst, "OCR First");
  more.note(QStringLiteral("recognises the text of scanned pages"));
  more.wide().box(&S::rotated, "landscape layout");
  more.note(QStringLiteral("for pages that lie on their side"));
}

void buildSearch(SetupGroup& group) {
  FormGrid grid = group.front();
  grid.row("Find &word(s):").text(&S::findString);
  grid.row("").box(&S::ignoreCase, "&Ignore case sensitive text");
  grid.row("&At Position h:").text(&S::matchPosH, Shown::Position);
  grid.before("v:").text(&S::matchPosV, Shown::Position).called("At Position v");
  grid.hint("positionHint", "A click on a word of the page offers the place where it stands.");
  grid.row("E&xtract until word(s):").text(&S::extractUntil);
  grid.row("At Position h:").whole(&S::untilMatchPosH).called("Until words at Position h");
  grid.before("v:").whole(&S::untilMatchPosV).called("Until words at Position v");
}

void buildRanges(SetupGroup& group) {
  FormGrid grid = group.front();
  grid.row("* Pa&ge extract:").list(&S::pageExtract, splitMethodTexts());
  grid.last<QComboBox>()->insertSeparator(static_cast<int>(SplitMethod::Bookmarks));
  grid.say("splitMethodWords", splitMethodWords);
  grid.row("Remove first:").whole(&S::offsetFirst, {0, most});
  grid.note(QStringLiteral("output pages"));
}

void addAffix(FormGrid& grid, const char* label, QString S::*setting, const char* tokensName) {
  std::vector<Insertion> tokens;
  for (const NameToken& token : nameTokens()) {
    tokens.push_back({token.text, token.meaning});
  }
  grid.row(label).text(setting);
  grid.insertions(tokensName, "[...]", "Insert a token: it is replaced in each name", tokens);
}

void buildNames(SetupGroup& group) {
  FormGrid front = group.front();
  front.row("Filename extra&ct:").list(&S::extract, fileNameMethodTexts());
  front.row("Use as filename after text:").text(&S::extractFileName);
  front.say("nameMethodWords", nameMethodWords);
  addAffix(front, "Prefix output filename:", &S::prefixFileName, "prefixTokens");
  FormGrid more = group.more("moreOfNames");
  more.row("Only ta&ke first:").whole(&S::takenWordsForFileName, {1, most});
  more.note(QStringLiteral("words for filename extract"));
  more.row("while h position is less than:").whole(&S::untilHHPosLessThan, {0, most});
  more.row("until first of word is:").text(&S::firstCharOfWord);
  more.row("or anywhere in word is like:").text(&S::anyCharOfWord);
  more.row("Add:").text(&S::addBWords);
  more.note(QStringLiteral("between words in output filename"));
  more.wide().box(&S::useSourceFileName, "Prefix with source filename");
  addAffix(more, "Postfix output filename:", &S::postfixFileName, "postfixTokens");
  more.wide().box(&S::useSourceFileNamePost, "Postfix with source filename");
}

void buildOutput(SetupGroup& group) {
  FormGrid front = group.front();
  front.row("Output &Directory:").text(&S::outputDir, Shown::End);
  front.browse({.name = "browseOutput",
                .toolTip = "Choose the output folder",
                .what = Browse::For::Folder,
                .text = "Browse...",
                .memoryKey = "folders/output"});
  front.wide().box(&S::splitToSource, "Alwa&ys split to source file directory (override below)");
  front.wide().box(&S::alwaysOverwrite, "Always overwrite output file (if exists)");
  auto* overwrite = front.last<QCheckBox>();
  front.wide().box(&S::alwaysAppend, "Append (if exists)");
  exclude(overwrite, front.last<QCheckBox>());
  exclude(front.last<QCheckBox>(), overwrite);
  FormGrid more = group.more("moreOfOutput");
  more.wide().box(&S::keepBookmarks, "Keep Bookmarks");
  more.wide().box(&S::createList, "Create list only");
  more.note(QStringLiteral("for a later split; no PDF is written"));
}

} // namespace

const std::array<SetupGroupRow, 5>& setupGroups() {
  static constexpr std::array rows = {
      SetupGroupRow{"sourceGroup", "Which file", "source", buildSource},
      SetupGroupRow{"searchGroup", "Which words, and where", "search", buildSearch},
      SetupGroupRow{"rangesGroup", "How pages make a document", "ranges", buildRanges},
      SetupGroupRow{"namesGroup", "How outputs are named", "names", buildNames},
      SetupGroupRow{"outputGroup", "Where outputs go", "output", buildOutput}};
  return rows;
}

} // namespace folivex
