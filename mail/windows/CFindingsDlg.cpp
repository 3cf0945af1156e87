#include "mail/windows/CFindingsDlg.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int findingsWidthInCharacters = 90;
constexpr int heightInLines = 18;

QPushButton* buttonOf(const char* name, const QString& text, const QString& toolTip,
                      QWidget* parent) {
  auto* button = new QPushButton(text, parent);
  button->setObjectName(QLatin1String(name));
  button->setToolTip(toolTip);
  return button;
}

} // namespace

CFindingsDlg::CFindingsDlg(const Texts& texts, const QStringList& lines, QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("CFindingsDlg"));
  setWindowTitle(texts.title);
  auto* text = new QPlainTextEdit(lines.join(u'\n'), this);
  text->setObjectName(QStringLiteral("lines"));
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setToolTip(QStringLiteral("Select and copy what you want to keep"));
  auto* heading = new QLabel(texts.heading, this);
  heading->setObjectName(QStringLiteral("heading"));
  heading->setTextFormat(Qt::PlainText);
  heading->setWordWrap(true);
  heading->setBuddy(text);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  if (!texts.accept.isEmpty()) {
    auto* accept = buttonOf("accept", texts.accept, texts.acceptTip, this);
    accept->setEnabled(texts.canAccept);
    connect(accept, &QPushButton::clicked, this, [this] { QDialog::accept(); });
    buttons->addWidget(accept);
  }
  auto* close = buttonOf("close", texts.close, QStringLiteral("Close this window"), this);
  connect(close, &QPushButton::clicked, this, [this] { reject(); });
  buttons->addWidget(close);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(heading);
  layout->addWidget(text, 1);
  layout->addLayout(buttons);
  resize(fontMetrics().averageCharWidth() * findingsWidthInCharacters,
         fontMetrics().lineSpacing() * heightInLines);
}

} // namespace folivex
