#include "app/viewer/PageNotice.h"

#include "widgets/Controls.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

PageNotice::PageNotice(QWidget* parent) : QWidget(parent), m_text(new QLabel(this)) {
  named(m_text, "viewerState");
  m_text->setTextFormat(Qt::PlainText);
  m_text->setWordWrap(true);
  m_text->setAlignment(Qt::AlignCenter);

  m_again = sideButton("reloadFile", QStringLiteral("Try again"),
                       QStringLiteral("Open the file again (F5)"), this, [this] { onAgain(); });
  m_open = sideButton("openFromPage", QStringLiteral("Open PDF..."),
                      QStringLiteral("Choose the PDF to split"), this, [this] { onOpenWanted(); });
  m_sample = sideButton("trySample", QStringLiteral("Try the sample"),
                        QStringLiteral("Forty pages of statements, with a setup that splits them"),
                        this, [this] { onSampleWanted(); });

  m_password = named(new QLineEdit(this), "pagePassword", "The password that opens this PDF");
  m_password->setEchoMode(QLineEdit::Password);
  QLabel* label = labelFor(m_password, QStringLiteral("Password:"));
  QPushButton* enter = sideButton("enterPassword", QStringLiteral("Open"),
                                  QStringLiteral("Open the file with this password"), this,
                                  [this] { onPassword(m_password->text()); });
  connect(m_password, &QLineEdit::returnPressed, enter, &QPushButton::click);
  m_passwordRow = sideBySide(this, {gap(), label, m_password, enter, gap()});

  auto* layout = new QVBoxLayout(this);
  constexpr int air = 24;
  layout->setContentsMargins(air, air, air, air);
  layout->setSpacing(air / 2);
  layout->addStretch(1);
  layout->addWidget(m_text);
  layout->addWidget(sideBySide(this, {gap(), m_again, m_open, m_sample, gap()}));
  layout->addWidget(m_passwordRow);
  layout->addStretch(2);
  showStart();
}

void PageNotice::showStart() {
  tell(Kind::Start, QStringLiteral("Drop a PDF here, open one, or try the sample."));
}

void PageNotice::forgetPassword() {
  m_password->clear();
}

void PageNotice::tell(Kind kind, const QString& text) {
  m_text->setText(text);
  // Who typed a password goes on typing there while it is tried.
  const bool isTyping = m_passwordRow->isAncestorOf(QApplication::focusWidget());
  m_again->setVisible(kind == Kind::Problem);
  m_open->setVisible(kind == Kind::Start || kind == Kind::Problem);
  m_sample->setVisible(kind == Kind::Start);
  m_passwordRow->setVisible(kind == Kind::Password || (kind == Kind::Wait && isTyping));
  m_password->selectAll();
}

} // namespace folivex
