#include "app/groups/SetupGroups.h"

#include "engine/naming/NameTokens.h"
#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SplitMethod.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QCheckBox>
#include <QComboBox>
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
  QCheckBox* current =
      box(&SplitSetup::useCurrent, QStringLiteral("&Use current open PDF document"));
  QLineEdit* source = textField(&SplitSetup::fileName, SetupBinding::Shown::End);
  const QString title = QStringLiteral("Choose the PDF to split");
  QPushButton* browse =
      browseButton("browseSource", QStringLiteral("&Browse..."), title, source, "folders/source",
                   [this, title](const QString& start) {
                     const QString filter =
                         QStringLiteral("PDF files (*.pdf *.PDF);;All files (*)");
                     return m_parts.dialogs.openFile(window(), {title, filter, start, {}});
                   });
  QLineEdit* password = textField(&SplitSetup::pdfPassword);
  password->setEchoMode(QLineEdit::Password);
  QLineEdit* first = wholeField(&SplitSetup::startFromPage);
  QLineEdit* last = wholeField(&SplitSetup::startEndPage);
  QCheckBox* rotated = box(&SplitSetup::rotated, QStringLiteral("lan&dscape layout"));
  QCheckBox* ocr = box(&SplitSetup::ocrFirst, QStringLiteral("&OCR First"));

  FormGrid grid(this, parts.binding);
  grid.row(QStringLiteral("File&name:"), {source, browse});
  grid.row(QString(), {current});
  grid.row(QStringLiteral("Password:"),
           {password, between(QStringLiteral("(optional PDF open password)"), password)});
  grid.row(QStringLiteral("Start fro&m page:"),
           {first, between(QStringLiteral("to"), last), last,
            between(QStringLiteral("(0 is to the end)"), last)});
  grid.row(QString(), {ocr, rotated});
}

SearchGroup::SearchGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("searchGroup", QStringLiteral("Which words, and where"), "search", parts, parent) {
  QLineEdit* find = textField(&SplitSetup::findString);
  QCheckBox* ignoreCase =
      box(&SplitSetup::ignoreCase, QStringLiteral("&Ignore case sensitive text"));
  QLineEdit* h = positionField(&SplitSetup::matchPosH);
  QLineEdit* v = positionField(&SplitSetup::matchPosV);
  m_viewPage = sideButton("viewPageButton", QStringLiteral("View Pa&ge h,v..."),
                          QStringLiteral("See a page, and where its words stand"), this);
  QLineEdit* until = textField(&SplitSetup::extractUntil);
  QLineEdit* untilH = wholeField(&SplitSetup::untilMatchPosH);
  QLineEdit* untilV = wholeField(&SplitSetup::untilMatchPosV);

  FormGrid grid(this, parts.binding);
  grid.row(QStringLiteral("Find &word(s):"), {find, ignoreCase});
  grid.row(QStringLiteral("&At Position h:"),
           {h, between(QStringLiteral("&v:"), v), v, m_viewPage});
  grid.row(QStringLiteral("E&xtract until word(s):"), {until});
  grid.row(QStringLiteral("At Position h:"),
           {untilH, between(QStringLiteral("v:"), untilV), untilV});
}

RangesGroup::RangesGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("rangesGroup", QStringLiteral("How pages make a document"), "ranges", parts,
                 parent) {
  auto* methods = new QComboBox(this);
  methods->addItems(splitMethodTexts());
  methods->insertSeparator(static_cast<int>(SplitMethod::Bookmarks));
  methods->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  parts.binding.bind(&SplitSetup::pageExtract, methods);
  QLineEdit* offset = wholeField(&SplitSetup::offsetFirst, {0, std::numeric_limits<int>::max()});

  FormGrid grid(this, parts.binding);
  grid.row(QStringLiteral("* Page &extract:"), {methods});
  grid.row(QStringLiteral("Remove first:"),
           {offset, between(QStringLiteral("output pages"), offset)});
}

NamesGroup::NamesGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("namesGroup", QStringLiteral("How outputs are named"), "names", parts, parent),
      m_methods(new QComboBox(this)) {
  addAll(m_methods, fileNameMethodTexts());
  // The longest text would make the window as wide as itself.
  m_methods->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_methods->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  parts.binding.bind(&SplitSetup::extract, m_methods);
  QLineEdit* after = textField(&SplitSetup::extractFileName);
  QLineEdit* first = textField(&SplitSetup::firstCharOfWord);
  QLineEdit* any = textField(&SplitSetup::anyCharOfWord);
  QLineEdit* taken =
      wholeField(&SplitSetup::takenWordsForFileName, {1, std::numeric_limits<int>::max()});
  QLineEdit* left =
      wholeField(&SplitSetup::untilHHPosLessThan, {0, std::numeric_limits<int>::max()});
  QLineEdit* separator = textField(&SplitSetup::addBWords);
  QLineEdit* prefix = textField(&SplitSetup::prefixFileName);
  QWidget* prefixTokens = tokenButton(prefix, "prefixTokens");
  QCheckBox* sourcePrefix =
      box(&SplitSetup::useSourceFileName, QStringLiteral("Prefix with source filename"));
  QLineEdit* postfix = textField(&SplitSetup::postfixFileName);
  QWidget* postfixTokens = tokenButton(postfix, "postfixTokens");
  QCheckBox* sourcePostfix =
      box(&SplitSetup::useSourceFileNamePost, QStringLiteral("Postfix with source filename"));

  FormGrid grid(this, parts.binding);
  grid.row(QStringLiteral("Filename extra&ct:"), {m_methods});
  grid.row(QStringLiteral("Use as filename after text:"), {after});
  grid.row(QStringLiteral("Only ta&ke first:"),
           {taken, between(QStringLiteral("words for filename extract"), taken)});
  grid.row(QStringLiteral("while h position is less than:"), {left});
  grid.row(QStringLiteral("until first of word is:"), {first});
  grid.row(QStringLiteral("or anywhere in word is like:"), {any});
  grid.row(QStringLiteral("Add:"),
           {separator, between(QStringLiteral("between words in output filename"), separator)});
  grid.row(QStringLiteral("Prefix output filename:"), {prefix, prefixTokens});
  grid.row(QString(), {sourcePrefix});
  grid.row(QStringLiteral("Postfix output filename:"), {postfix, postfixTokens});
  grid.row(QString(), {sourcePostfix});
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

  FormGrid grid(this, parts.binding);
  grid.wide({toSource});
  grid.row(QStringLiteral("Output Directory:"), {folder, browse});
  grid.wide({overwrite, append});
  grid.wide({bookmarks, list});
}

} // namespace folivex
