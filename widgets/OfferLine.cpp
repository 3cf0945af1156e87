#include "widgets/OfferLine.h"

#include "widgets/Controls.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace folivex {

OfferLine::OfferLine(const QString& name, QWidget* parent)
    : QFrame(parent), m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this)),
      m_row(new QHBoxLayout), m_text(new QLabel(this)) {
  setObjectName(name);
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  m_text->setObjectName(name + QStringLiteral("Text"));
  m_text->setTextFormat(Qt::PlainText); // it may come from a page or a server
  m_text->setWordWrap(true);
  m_layout->addWidget(m_text, 1);
  m_layout->addLayout(m_row);
  m_row->addStretch();
  for (std::size_t i = 0; i < mostOfferButtons; ++i) {
    QPushButton* button = sideButton("", QString(), QString(), this, [this, i] {
      hide();
      const auto act = m_answers[i].onClicked; // which may bring the next offer
      act();
    });
    button->setObjectName(name + QString::number(i + 1));
    m_row->addWidget(button);
    m_buttons.push_back(button);
  }
  m_later = sideButton("", QStringLiteral("Not now"), QStringLiteral("Put this line away"), this,
                       [this] { hide(); });
  m_later->setObjectName(name + QStringLiteral("Later"));
  m_row->addWidget(m_later);
  hide();
}

void OfferLine::offer(const QString& text, std::vector<OfferButton> answers, Tone tone) {
  m_text->setText(text);
  setTone(m_text, tone);
  m_later->setVisible(tone != Tone::Problem);
  m_answers = std::move(answers);
  for (std::size_t i = 0; i < m_buttons.size(); ++i) {
    m_buttons[i]->setVisible(i < m_answers.size());
    m_buttons[i]->setText(i < m_answers.size() ? m_answers[i].text : QString());
  }
  fit();
  show();
}

void OfferLine::fit() {
  constexpr int fewestLetters = 40; // of a line that is nice to read
  const int room = width() - m_row->sizeHint().width();
  m_layout->setDirection(room < fewestLetters * fontMetrics().averageCharWidth()
                             ? QBoxLayout::TopToBottom
                             : QBoxLayout::LeftToRight);
}

void OfferLine::resizeEvent(QResizeEvent* event) {
  fit();
  QFrame::resizeEvent(event);
}

} // namespace folivex
