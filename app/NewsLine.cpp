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
  named(m_text, "newsText");
  m_text->setTextFormat(Qt::PlainText); // it may come from a server
  m_text->setWordWrap(true);
  QPushButton* more = sideButton("newsMore", QStringLiteral("More..."),
                                 QStringLiteral("See what is new, and where to get it"), this,
                                 [this] { m_onMore(); });
  QPushButton* later = sideButton("newsLater", QStringLiteral("Not now"),
                                  QStringLiteral("Put this line away"), this, [this] { hide(); });
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
