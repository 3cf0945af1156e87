#include "app/groups/SetupGroups.h"

#include "app/dialogs/SettingUse.h"
#include "app/groups/SettingWords.h"
#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

namespace {

/// Choosing the one gives up the other. Only a click does: a setup file may have both.
void exclude(QCheckBox* one, QCheckBox* other) {
  QObject::connect(one, &QCheckBox::clicked, other, [other](bool isChecked) {
    if (isChecked) {
      other->setChecked(false);
    }
  });
}

template <typename Texts> void addAll(QComboBox* list, const Texts& texts) {
  for (const QString& text : texts) {
    list->addItem(text);
  }
}

} // namespace

SourceGroup::SourceGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("sourceGroup", QStringLiteral("Which file"), "source", parts, parent) {
  QLineEdit* source = textField(&SplitSetup::fileName, SetupBinding::Shown::End);
  const QString title = QStringLiteral("Choose the PDF to split");
  QPushButton* browse =
      browseButton("browseSource", QStringLiteral("&Browse..."), title, source, "folders/source",
                   [this, title](const QString& start) {
                     const QString filter =
                         QStringLiteral("PDF files (*.pdf *.PDF);;All files (*)");
                     return m_parts.dialogs.openFile(window(), {title, filter, start, {}});
                   });
  QCheckBox* current =
      box(&SplitSetup::useCurrent, QStringLiteral("&Use current open PDF document"));
  QLineEdit* password = textField(&SplitSetup::pdfPassword);
  password->setEchoMode(QLineEdit::Password);
  QLineEdit* first = wholeField(&SplitSetup::startFromPage);
  QLineEdit* last = wholeField(&SplitSetup::startEndPage);
  last->setAccessibleName(QStringLiteral("Last page"));
  QCheckBox* ocr = box(&SplitSetup::ocrFirst, QStringLiteral("OCR First"));
  QCheckBox* rotated = box(&SplitSetup::rotated, QStringLiteral("landscape layout"));

  FormGrid front = frontGrid();
  front.row(QStringLiteral("File&name:"), {source, browse});
  FormGrid more = moreGrid("moreOfSource", front);
  more.wide({current});
  more.row(QStringLiteral("Password:"),
           {password, between(QStringLiteral("(optional PDF open password)"), password)});
  more.row(QStringLiteral("Start from page:"), {first, between(QStringLiteral("to"), last), last});
  more.sentence(last->objectName(), quietLabel("lastPageHint", "(0 is to the end)"));
  more.wide({ocr, between(QStringLiteral("recognises the text of scanned pages"), ocr)});
  more.wide({rotated, between(QStringLiteral("for pages that lie on their side"), rotated)});
}

SearchGroup::SearchGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("searchGroup", QStringLiteral("Which words, and where"), "search", parts, parent) {
  QLineEdit* find = textField(&SplitSetup::findString);
  QCheckBox* ignoreCase =
      box(&SplitSetup::ignoreCase, QStringLiteral("&Ignore case sensitive text"));
  QLineEdit* h = positionField(&SplitSetup::matchPosH);
  QLineEdit* v = positionField(&SplitSetup::matchPosV);
  v->setAccessibleName(QStringLiteral("At Position v"));
  QLineEdit* until = textField(&SplitSetup::extractUntil);
  QLineEdit* untilH = wholeField(&SplitSetup::untilMatchPosH);
  untilH->setAccessibleName(QStringLiteral("Until words at Position h"));
  QLineEdit* untilV = wholeField(&SplitSetup::untilMatchPosV);
  untilV->setAccessibleName(QStringLiteral("Until words at Position v"));

  FormGrid grid = frontGrid();
  grid.row(QStringLiteral("Find &word(s):"), {find});
  grid.row(QString(), {ignoreCase});
  grid.row(QStringLiteral("&At Position h:"), {h, between(QStringLiteral("v:"), v), v});
  grid.sentence(h->objectName(), quietLabel("positionHint", "A click on a word of the page offers "
                                                            "the place where it stands."));
  grid.row(QStringLiteral("E&xtract until word(s):"), {until});
  grid.row(QStringLiteral("At Position h:"),
           {untilH, between(QStringLiteral("v:"), untilV), untilV});
}

RangesGroup::RangesGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("rangesGroup", QStringLiteral("How pages make a document"), "ranges", parts,
                 parent),
      m_meaning(quietLabel("splitMethodWords")) {
  QComboBox* methods = list(&SplitSetup::pageExtract);
  methods->addItems(splitMethodTexts());
  methods->insertSeparator(static_cast<int>(SplitMethod::Bookmarks));
  QLineEdit* offset = wholeField(&SplitSetup::offsetFirst, {0, std::numeric_limits<int>::max()});

  FormGrid grid = frontGrid();
  grid.row(QStringLiteral("* Pa&ge extract:"), {methods});
  grid.sentence(methods->objectName(), m_meaning);
  grid.row(QStringLiteral("Remove first:"),
           {offset, between(QStringLiteral("output pages"), offset)});
}

void RangesGroup::adapt(const SplitSetup& setup) {
  m_meaning->setText(splitMethodWords(setup));
}

NamesGroup::NamesGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("namesGroup", QStringLiteral("How outputs are named"), "names", parts, parent),
      m_methods(list(&SplitSetup::extract)), m_meaning(quietLabel("nameMethodWords")) {
  addAll(m_methods, fileNameMethodTexts());
  QLineEdit* after = textField(&SplitSetup::extractFileName);
  QLineEdit* prefix = textField(&SplitSetup::prefixFileName);
  QWidget* prefixTokens = tokenButton(prefix, "prefixTokens");
  QLineEdit* taken =
      wholeField(&SplitSetup::takenWordsForFileName, {1, std::numeric_limits<int>::max()});
  QLineEdit* left =
      wholeField(&SplitSetup::untilHHPosLessThan, {0, std::numeric_limits<int>::max()});
  QLineEdit* first = textField(&SplitSetup::firstCharOfWord);
  QLineEdit* any = textField(&SplitSetup::anyCharOfWord);
  QLineEdit* separator = textField(&SplitSetup::addBWords);
  QCheckBox* sourcePrefix =
      box(&SplitSetup::useSourceFileName, QStringLiteral("Prefix with source filename"));
  QLineEdit* postfix = textField(&SplitSetup::postfixFileName);
  QWidget* postfixTokens = tokenButton(postfix, "postfixTokens");
  QCheckBox* sourcePostfix =
      box(&SplitSetup::useSourceFileNamePost, QStringLiteral("Postfix with source filename"));

  FormGrid front = frontGrid();
  front.row(QStringLiteral("Filename extra&ct:"), {m_methods});
  front.row(QStringLiteral("Use as filename after text:"), {after});
  front.sentence({}, m_meaning);
  front.row(QStringLiteral("Prefix output filename:"), {prefix, prefixTokens});
  FormGrid more = moreGrid("moreOfNames", front);
  more.row(QStringLiteral("Only ta&ke first:"),
           {taken, between(QStringLiteral("words for filename extract"), taken)});
  more.row(QStringLiteral("while h position is less than:"), {left});
  more.row(QStringLiteral("until first of word is:"), {first});
  more.row(QStringLiteral("or anywhere in word is like:"), {any});
  more.row(QStringLiteral("Add:"),
           {separator, between(QStringLiteral("between words in output filename"), separator)});
  more.wide({sourcePrefix});
  more.row(QStringLiteral("Postfix output filename:"), {postfix, postfixTokens});
  more.wide({sourcePostfix});
}

QWidget* NamesGroup::tokenButton(QLineEdit* field, const char* name) {
  QPushButton* button =
      sideButton(name, QStringLiteral("[...]"),
                 QStringLiteral("Insert a token: it is replaced in each name"), this);
  for (const NameToken& token : nameTokens()) {
    addInsertion(button, field, token.text, token.meaning);
  }
  m_parts.binding.follow(field->objectName(), button);
  return button;
}

void NamesGroup::adapt(const SplitSetup& setup) {
  setByBookmarks(!matchesWords(setup));
  m_meaning->setText(nameMethodWords(setup));
}

void NamesGroup::setByBookmarks(bool byBookmarks) {
  const int entry = m_methods->findText(bookmarkFileNameMethodText());
  if (byBookmarks && entry < 0) {
    m_methodForWords = m_methods->currentText();
    m_methods->addItem(bookmarkFileNameMethodText());
    m_methods->setCurrentIndex(m_methods->count() - 1);
  } else if (!byBookmarks && entry >= 0) {
    m_methods->removeItem(entry);
    m_methods->setCurrentText(m_methodForWords);
  }
}

OutputGroup::OutputGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("outputGroup", QStringLiteral("Where outputs go"), "output", parts, parent) {
  QCheckBox* toSource =
      box(&SplitSetup::splitToSource,
          QStringLiteral("Alwa&ys split to source file directory (override below)"));
  QLineEdit* folder = textField(&SplitSetup::outputDir, SetupBinding::Shown::End);
  const QString title = QStringLiteral("Choose the output folder");
  QPushButton* browse = browseButton("browseOutput", QStringLiteral("Browse..."), title, folder,
                                     "folders/output", [this, title](const QString& start) {
                                       return m_parts.dialogs.chooseFolder(window(), title, start);
                                     });
  QCheckBox* overwrite =
      box(&SplitSetup::alwaysOverwrite, QStringLiteral("Always overwrite output file (if exists)"));
  QCheckBox* append = box(&SplitSetup::alwaysAppend, QStringLiteral("Append (if exists)"));
  exclude(overwrite, append);
  exclude(append, overwrite);
  QCheckBox* list = box(&SplitSetup::createList, QStringLiteral("Create list only"));
  QCheckBox* bookmarks = box(&SplitSetup::keepBookmarks, QStringLiteral("Keep Bookmarks"));

  FormGrid front = frontGrid();
  front.row(QStringLiteral("Output &Directory:"), {folder, browse});
  front.wide({toSource});
  front.wide({overwrite});
  front.wide({append});
  FormGrid more = moreGrid("moreOfOutput", front);
  more.wide({bookmarks});
  more.wide({list, between(QStringLiteral("for a later split; no PDF is written"), list)});
}

DialogGroup::DialogGroup(const DialogGroupRow& row, QWidget* parent)
    : QWidget(parent), m_words(row.words), m_text(new QLabel(this)) {
  setObjectName(QString::fromLatin1(row.name));
  setProperty("helpTopic", QString::fromLatin1(row.helpTopic));
  const QString title = QString::fromLatin1(row.title);
  auto* heading = new QLabel(title, this);
  QFont bold = heading->font();
  bold.setBold(true);
  heading->setFont(bold);
  named(m_text, "words")->setTextFormat(Qt::PlainText);
  m_text->setWordWrap(true);
  QPushButton* change = sideButton("change", QStringLiteral("Change..."),
                                   QString::fromLatin1(row.toolTip), this, [this] { onChange(); });
  change->setObjectName(objectName() + QStringLiteral("Change"));
  change->setAccessibleName(QStringLiteral("Change: %1").arg(title));
  auto* grid = new QGridLayout(this);
  constexpr QMargins inside(14, 2, 0, 2);
  grid->setContentsMargins(inside);
  grid->addWidget(heading, 0, 0);
  grid->addWidget(m_text, 1, 0);
  grid->addWidget(change, 0, 1, 2, 1, Qt::AlignVCenter);
  grid->setColumnStretch(0, 1);
}

void DialogGroup::adapt(const SplitSetup& setup) {
  m_text->setText(m_words(setup));
}

} // namespace folivex
