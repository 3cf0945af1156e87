#include "mail/windows/CFindingsDlg.h"

#include "widgets/Controls.h"

#include <QPlainTextEdit>
#include <QPushButton>

namespace folivex {

namespace {

constexpr int findingsWidthInCharacters = 90;
constexpr int heightInLines = 18;

} // namespace

CFindingsDlg::CFindingsDlg(const Texts& texts, const QStringList& lines, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("CFindingsDlg"));
  setWindowTitle(texts.title);
  auto* text = named(new QPlainTextEdit(lines.join(u'\n'), this), "lines",
                     "Select and copy what you want to keep");
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  QLabel* heading = named(labelFor(text, texts.heading), "heading");
  heading->setTextFormat(Qt::PlainText);
  heading->setWordWrap(true);

  QPushButton* accept = nullptr;
  if (!texts.accept.isEmpty()) {
    accept = named(new QPushButton(texts.accept, this), "accept", texts.acceptTip);
    accept->setEnabled(texts.canAccept);
    connect(accept, &QPushButton::clicked, this, &QDialog::accept);
  }
  auto* close = named(new QPushButton(texts.close, this), "close", "Close this window");
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  stack(this, {heading, {text, 1}, sideBySide(this, {gap(), accept, close})});
  resize(fontMetrics().averageCharWidth() * findingsWidthInCharacters,
         fontMetrics().lineSpacing() * heightInLines);
}

} // namespace folivex
