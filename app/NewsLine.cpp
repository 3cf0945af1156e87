#include "app/NewsLine.h"

#include "widgets/Controls.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace folivex {

NewsLine::NewsLine(QWidget* parent) : QFrame(parent), m_text(new QLabel(this)) {
  setObjectName(QStringLiteral("news"));
  setFrameShape(QFrame::StyledPanel);
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  m_text->setObjectName(QStringLiteral("newsText"));
  m_text->setTextFormat(Qt::PlainText); // it may come from a server
  m_text->setWordWrap(true);
  QPushButton* more = sideButton("newsMore", QStringLiteral("More..."),
                                 QStringLiteral("See what is new, and where to get it"), this);
  QPushButton* later = sideButton("newsLater", QStringLiteral("Not now"),
                                  QStringLiteral("Put this line away"), this);
  connect(more, &QPushButton::clicked, this, [this] {
    if (m_onMore) {
      m_onMore();
    }
  });
  connect(later, &QPushButton::clicked, this, &QWidget::hide);
  auto* layout = new QHBoxLayout(this);
  layout->addWidget(m_text, 1);
  layout->addWidget(more);
  layout->addWidget(later);
  hide();
}

void NewsLine::tell(const QString& text, std::function<void()> onMore) {
  m_text->setText(text);
  m_onMore = std::move(onMore);
  show();
}

} // namespace folivex
