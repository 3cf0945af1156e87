#include "app/groups/SourceGroup.h"

#include "platform/Paths.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"
#include "widgets/WindowMemory.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

SourceGroup::SourceGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("sourceGroup", QStringLiteral("Which file"), "source", parts, parent) {
  QCheckBox* current =
      box(&SplitSetup::useCurrent, QStringLiteral("&Use current open PDF document"));
  QLineEdit* source = textField(&SplitSetup::fileName, SetupBinding::Shown::End);
  QPushButton* browse = sideButton("browseSource", QStringLiteral("&Browse..."),
                                   QStringLiteral("Choose the PDF to split"), this);
  parts.binding.follow(source->objectName(), browse);
  connect(browse, &QPushButton::clicked, this, [this, source] { chooseSource(source); });
  QLineEdit* password = passwordField(this);
  password->setAcceptDrops(false);
  parts.binding.bind(&SplitSetup::pdfPassword, password);
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

void SourceGroup::chooseSource(QLineEdit* field) {
  const QString key = QStringLiteral("folders/source");
  const QString start = field->text().isEmpty() ? m_parts.memory.text(key) : field->text();
  const QString chosen =
      m_parts.dialogs.openFile(window(), {QStringLiteral("Choose the PDF to split"),
                                          QStringLiteral("PDF files (*.pdf *.PDF);;All files (*)"),
                                          start,
                                          {}});
  if (!chosen.isEmpty()) {
    field->setText(chosen);
    m_parts.memory.setText(key, platform::folderOf(chosen));
  }
}

} // namespace folivex
