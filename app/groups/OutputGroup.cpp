#include "app/groups/OutputGroup.h"

#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QLabel>
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

} // namespace

OutputGroup::OutputGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("outputGroup", QStringLiteral("Where outputs go"), "output", parts, parent) {
  QCheckBox* toSource =
      box(&SplitSetup::splitToSource,
          QStringLiteral("Alwa&ys split to source file directory (override below)"));
  QLineEdit* folder = textField(&SplitSetup::outputDir, SetupBinding::Shown::End);
  QPushButton* browse = sideButton("browseOutput", QStringLiteral("Browse..."),
                                   QStringLiteral("Choose the output folder"), this);
  parts.binding.follow(folder->objectName(), browse);
  connect(browse, &QPushButton::clicked, this, [this, folder] { chooseFolder(folder); });
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

void OutputGroup::chooseFolder(QLineEdit* field) {
  const QString key = QStringLiteral("folders/output");
  const QString start = field->text().isEmpty() ? m_parts.memory.text(key) : field->text();
  const QString chosen =
      m_parts.dialogs.chooseFolder(window(), QStringLiteral("Choose the output folder"), start);
  if (!chosen.isEmpty()) {
    field->setText(chosen);
    m_parts.memory.setText(key, chosen);
  }
}

} // namespace folivex
