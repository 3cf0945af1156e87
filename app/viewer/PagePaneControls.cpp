// The controls of the page viewer and how they stand.
#include "app/viewer/PageArea.h"
#include "app/viewer/PagePane.h"

#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Theme.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>

namespace folivex {

namespace {

struct ToolText {
  const char* name;
  const char* label;
  const char* spoken; ///< what a screen reader says in place of a sign; empty: the label
  const char* tip;
};

QToolButton* toolButton(QWidget* parent, const ToolText& text, std::function<void()> onClicked) {
  auto* button = named(new QToolButton(parent), text.name, text.tip);
  button->setText(QString::fromUtf8(text.label));
  if (*text.spoken != '\0') {
    button->setAccessibleName(QString::fromUtf8(text.spoken));
  }
  button->setToolButtonStyle(Qt::ToolButtonTextOnly);
  button->setFocusPolicy(Qt::TabFocus);
  QObject::connect(button, &QToolButton::clicked, button, std::move(onClicked));
  return button;
}

} // namespace

void PagePane::buildControls() {
  m_area = new PageArea(this);
  m_canvas = m_area->canvas();
  m_state = named(new QLabel(this), "viewerState");
  m_state->setTextFormat(Qt::PlainText);
  m_state->setWordWrap(true);
  m_state->setAlignment(Qt::AlignCenter);
  constexpr int air = 24;
  m_state->setMargin(air);
  m_stack = new QStackedWidget(this);
  m_stack->addWidget(m_state);
  m_stack->addWidget(m_area);
  m_pageProblem = named(new ElidedLabel(this), "pageProblem");
  setTone(m_pageProblem, Tone::Problem);
  m_pageProblem->hide();

  stack(this, {buildPageRow(), buildWalkRow(), {m_stack, 1}, m_pageProblem, buildPickRow()});
  setTargets({});
}

QWidget* PagePane::buildPageRow() {
  m_first = toolButton(this, {"firstPage", "«", "First page", "First page (Home)"},
                       [this] { goToPage(1); });
  m_previous = toolButton(
      this, {"previousPage", "‹", "Previous page", "Previous page (Page Up, Ctrl+Page Up)"},
      [this] { turn(-1); });
  m_next = toolButton(this, {"nextPage", "›", "Next page", "Next page (Page Down, Ctrl+Page Down)"},
                      [this] { turn(1); });
  m_last = toolButton(this, {"lastPage", "»", "Last page", "Last page (End)"},
                      [this] { goToPage(m_pageCount); });
  m_pageField = named(new QSpinBox(this), "pageField",
                      "Page shown; type a number and press Enter to go there");
  m_pageField->setKeyboardTracking(false);
  m_pageField->setRange(1, 1);
  connect(m_pageField, &QSpinBox::valueChanged, this, [this](int page) { goToPage(page); });
  m_pageField->setAlignment(Qt::AlignRight);
  constexpr int roomForDigits = 8;
  m_pageField->setMinimumWidth(m_pageField->fontMetrics().averageCharWidth() * roomForDigits +
                               m_pageField->sizeHint().height());
  m_pageCountText = named(new QLabel(this), "pageCountText");
  m_zoomOut = toolButton(this, {"zoomOut", "−", "Zoom out", "Smaller (Ctrl+wheel, Ctrl+-)"},
                         [this] { zoomBy(-1); });
  m_zoomOut->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Minus));
  m_zoomIn = toolButton(this, {"zoomIn", "+", "Zoom in", "Larger (Ctrl+wheel, Ctrl++)"},
                        [this] { zoomBy(1); });
  m_zoomIn->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Plus));
  m_zoomText = named(new QLabel(this), "zoomText");
  m_zoomText->setAlignment(Qt::AlignCenter);
  m_zoomText->setMinimumWidth(m_zoomText->fontMetrics().horizontalAdvance(QStringLiteral("400 %")));
  m_fitWidth = toolButton(this, {"fitWidth", "Fit &width", "", "The page as wide as the window"},
                          [this] { setFit(PageSizing::Fit::Width, m_zoom); });
  m_fitPage = toolButton(this, {"fitPage", "&Fit page", "", "The whole page in the window"},
                         [this] { setFit(PageSizing::Fit::Page, m_zoom); });
  m_fitWidth->setCheckable(true);
  m_fitPage->setCheckable(true);
  m_reload = toolButton(this, {"reloadFile", "&Reload", "", "Open the file again (F5)"},
                        [this] { reload(); });
  return sideBySide(this, {m_first, m_previous, labelFor(m_pageField, QStringLiteral("&Page:")),
                           m_pageField, m_pageCountText, m_next, m_last, gap(), m_zoomOut,
                           m_zoomText, m_zoomIn, m_fitWidth, m_fitPage, m_reload});
}

QWidget* PagePane::buildWalkRow() {
  m_walkText = named(new ElidedLabel(this), "walkText");
  m_nextMatch = sideButton("nextMatch", QStringLiteral("&Next"),
                           QStringLiteral("Go on to the next match"), this, [this] { onNext(); });
  m_stopMatches =
      sideButton("stopMatches", QStringLiteral("&Stop"),
                 QStringLiteral("End the walk through the matches"), this, [this] { onStop(); });
  m_walkRow = named(sideBySide(this, {{m_walkText, 1}, m_nextMatch, m_stopMatches}), "walkRow");
  m_walkRow->hide();
  return m_walkRow;
}

QWidget* PagePane::buildPickRow() {
  m_wordText = named(new ElidedLabel(this), "wordText");
  m_copy =
      sideButton("copyPosition", QStringLiteral("&Copy h,v"),
                 QStringLiteral("Copy the position told on the left (Ctrl+C), as in \"72,140\""),
                 this, [this] { copyPosition(); });
  m_targets = named(new QComboBox(this), "pickTarget",
                    "What the word or rectangle that you pick is taken for");
  m_targetLabel = labelFor(m_targets, QStringLiteral("P&ick goes to:"));
  return sideBySide(this, {{m_wordText, 1}, m_copy, m_targetLabel, m_targets});
}

} // namespace folivex
