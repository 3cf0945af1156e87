// The controls of the page viewer and how they stand.
#include "app/viewer/PageArea.h"
#include "app/viewer/PageViewer.h"

#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Theme.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace folivex {

namespace {

struct ToolText {
  const char* name;
  const char* label;
  const char* spoken; ///< what a screen reader says in place of a sign; empty: the label
  const char* tip;
};

QToolButton* toolButton(QWidget* parent, const ToolText& text) {
  auto* button = new QToolButton(parent);
  button->setObjectName(QString::fromUtf8(text.name));
  button->setText(QString::fromUtf8(text.label));
  button->setToolTip(QString::fromUtf8(text.tip));
  if (*text.spoken != '\0') {
    button->setAccessibleName(QString::fromUtf8(text.spoken));
  }
  button->setToolButtonStyle(Qt::ToolButtonTextOnly);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

QPushButton* pushButton(QWidget* parent, const ToolText& text) {
  return sideButton(text.name, QString::fromUtf8(text.label), QString::fromUtf8(text.tip), parent);
}

/// A line whose text comes from a page: of any length, and no markup.
QLabel* pageTextLine(QWidget* parent, const char* name) {
  auto* line = new ElidedLabel(parent);
  line->setObjectName(QString::fromUtf8(name));
  return line;
}

QHBoxLayout* rowLayout(QWidget* row) {
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  return layout;
}

} // namespace

void PageViewer::buildControls() {
  m_area = new PageArea(this);
  m_canvas = m_area->canvas();
  m_state = new QLabel(this);
  m_state->setObjectName(QStringLiteral("viewerState"));
  m_state->setTextFormat(Qt::PlainText);
  m_state->setWordWrap(true);
  m_state->setAlignment(Qt::AlignCenter);
  constexpr int air = 24;
  m_state->setMargin(air);
  m_stack = new QStackedWidget(this);
  m_stack->addWidget(m_state);
  m_stack->addWidget(m_area);
  m_pageProblem = pageTextLine(this, "pageProblem");
  setTone(m_pageProblem, Tone::Problem);
  m_pageProblem->hide();

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(buildPageRow());
  layout->addWidget(buildWalkRow());
  layout->addWidget(m_stack, 1);
  layout->addWidget(m_pageProblem);
  layout->addWidget(buildPickRow());
  constexpr QSize startSize(820, 900);
  resizeOnScreen(this, startSize);
  setTargets({});
}

QWidget* PageViewer::buildPageRow() {
  auto* row = new QWidget(this);
  m_first = toolButton(row, {"firstPage", "«", "First page", "First page (Home)"});
  m_previous = toolButton(
      row, {"previousPage", "‹", "Previous page", "Previous page (Page Up, Ctrl+Page Up)"});
  m_next = toolButton(row, {"nextPage", "›", "Next page", "Next page (Page Down, Ctrl+Page Down)"});
  m_last = toolButton(row, {"lastPage", "»", "Last page", "Last page (End)"});
  m_pageField = new QSpinBox(row);
  m_pageField->setObjectName(QStringLiteral("pageField"));
  m_pageField->setToolTip(QStringLiteral("Page shown; type a number and press Enter to go there"));
  m_pageField->setKeyboardTracking(false);
  m_pageField->setRange(1, 1);
  m_pageField->setAlignment(Qt::AlignRight);
  constexpr int roomForDigits = 8;
  m_pageField->setMinimumWidth(m_pageField->fontMetrics().averageCharWidth() * roomForDigits +
                               m_pageField->sizeHint().height());
  auto* pageLabel = new QLabel(QStringLiteral("&Page:"), row);
  pageLabel->setBuddy(m_pageField);
  m_pageCountText = new QLabel(row);
  m_pageCountText->setObjectName(QStringLiteral("pageCountText"));
  m_zoomOut = toolButton(row, {"zoomOut", "−", "Zoom out", "Smaller (Ctrl+wheel, Ctrl+-)"});
  m_zoomOut->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Minus));
  m_zoomIn = toolButton(row, {"zoomIn", "+", "Zoom in", "Larger (Ctrl+wheel, Ctrl++)"});
  m_zoomIn->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Plus));
  m_zoomText = new QLabel(row);
  m_zoomText->setObjectName(QStringLiteral("zoomText"));
  m_zoomText->setAlignment(Qt::AlignCenter);
  m_zoomText->setMinimumWidth(m_zoomText->fontMetrics().horizontalAdvance(QStringLiteral("400 %")));
  m_fitWidth = toolButton(row, {"fitWidth", "Fit &width", "", "The page as wide as the window"});
  m_fitPage = toolButton(row, {"fitPage", "&Fit page", "", "The whole page in the window"});
  m_fitWidth->setCheckable(true);
  m_fitPage->setCheckable(true);
  m_reload = toolButton(row, {"reloadFile", "&Reload", "", "Open the file again (F5)"});

  QHBoxLayout* layout = rowLayout(row);
  layout->addWidget(m_first);
  layout->addWidget(m_previous);
  layout->addWidget(pageLabel);
  layout->addWidget(m_pageField);
  layout->addWidget(m_pageCountText);
  layout->addWidget(m_next);
  layout->addWidget(m_last);
  layout->addStretch(1);
  for (QWidget* control : std::initializer_list<QWidget*>{m_zoomOut, m_zoomText, m_zoomIn,
                                                          m_fitWidth, m_fitPage, m_reload}) {
    layout->addWidget(control);
  }
  return row;
}

QWidget* PageViewer::buildWalkRow() {
  m_walkRow = new QWidget(this);
  m_walkRow->setObjectName(QStringLiteral("walkRow"));
  m_walkText = pageTextLine(m_walkRow, "walkText");
  m_nextMatch = pushButton(m_walkRow, {"nextMatch", "&Next", "", "Go on to the next match"});
  m_stopMatches =
      pushButton(m_walkRow, {"stopMatches", "&Stop", "", "End the walk through the matches"});
  QHBoxLayout* layout = rowLayout(m_walkRow);
  layout->addWidget(m_walkText, 1);
  layout->addWidget(m_nextMatch);
  layout->addWidget(m_stopMatches);
  m_walkRow->hide();
  return m_walkRow;
}

QWidget* PageViewer::buildPickRow() {
  auto* row = new QWidget(this);
  m_wordText = pageTextLine(row, "wordText");
  m_copy = pushButton(row, {"copyPosition", "&Copy h,v", "",
                            "Copy the position told on the left (Ctrl+C), as in \"72,140\""});
  m_targets = new QComboBox(row);
  m_targets->setObjectName(QStringLiteral("pickTarget"));
  m_targets->setToolTip(QStringLiteral("What the word or rectangle that you pick is taken for"));
  m_targetLabel = new QLabel(QStringLiteral("P&ick goes to:"), row);
  m_targetLabel->setBuddy(m_targets);
  QHBoxLayout* layout = rowLayout(row);
  layout->addWidget(m_wordText, 1);
  layout->addWidget(m_copy);
  layout->addWidget(m_targetLabel);
  layout->addWidget(m_targets);
  return row;
}

} // namespace folivex
