#include "app/groups/NamesGroup.h"

#include "app/dialogs/NameTokens.h"
#include "engine/naming/FileNameMethod.h"
#include "widgets/Controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace folivex {

NamesGroup::NamesGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("namesGroup", QStringLiteral("How outputs are named"), "names", parts, parent),
      m_methods(new QComboBox(this)) {
  for (const QString& text : fileNameMethodTexts()) {
    m_methods->addItem(text);
  }
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
  auto* menu = new QMenu(button);
  for (const NameToken& token : nameTokens()) {
    const QString text = QString::fromLatin1(token.text);
    QAction* entry = menu->addAction(text + u'\t' + QString::fromLatin1(token.meaning));
    entry->setObjectName(text);
    connect(entry, &QAction::triggered, field, [field, text] {
      field->insert(text);
      field->setFocus();
    });
  }
  button->setMenu(menu);
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

} // namespace folivex
