// The controls and the menus of the page pane.
#include "app/viewer/FindBar.h"
#include "app/viewer/PageArea.h"
#include "app/viewer/PageNotice.h"
#include "app/viewer/PagePane.h"

#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>

#include <cmath>

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
  if (onClicked) {
    QObject::connect(button, &QToolButton::clicked, button, std::move(onClicked));
  }
  return button;
}

/// Text of a page is no mnemonic, and may be of any length.
QString quoted(const QString& text, const QFontMetrics& metrics) {
  constexpr int widest = 240;
  QString shown = metrics.elidedText(text, Qt::ElideMiddle, widest);
  return u'"' + shown.replace(u'&', QStringLiteral("&&")) + u'"';
}

} // namespace

void PagePane::buildControls() {
  m_offer = new OfferLine(QStringLiteral("offer"), this);
  m_pageRow = buildPageRow();
  QWidget* walkRow = buildWalkRow();
  m_findBar = new FindBar(this);
  m_stack = new QStackedWidget(this);
  m_notice = new PageNotice(m_stack);
  m_area = new PageArea(m_stack);
  m_canvas = m_area->canvas();
  m_stack->addWidget(m_notice);
  m_stack->addWidget(m_area);
  m_pageProblem = named(new ElidedLabel(this), "pageProblem");
  setTone(m_pageProblem, Tone::Problem);
  m_pageProblem->hide();
  m_wordText = named(new ElidedLabel(this), "wordText");
  m_told = named(new ElidedLabel(this), "toldText");
  setTone(m_told, Tone::Success);
  m_told->hide();
  stack(this,
        {m_offer, m_pageRow, walkRow, m_findBar, {m_stack, 1}, m_pageProblem, m_told, m_wordText});
}

QWidget* PagePane::buildPageRow() {
  m_previous = toolButton(
      this, {"previousPage", "‹", "Previous page", "Previous page (Page Up, Ctrl+Page Up)"},
      [this] { turn(-1); });
  m_pageField = named(new QSpinBox(this), "pageField",
                      "Page shown; type a number and press Enter to go there");
  m_pageField->setKeyboardTracking(false);
  m_pageField->setButtonSymbols(QAbstractSpinBox::NoButtons);
  m_pageField->setRange(1, 1);
  connect(m_pageField, &QSpinBox::valueChanged, this, [this](int page) { goToPage(page); });
  m_pageField->setAlignment(Qt::AlignRight);
  constexpr int roomForDigits = 8;
  m_pageField->setFixedWidth(m_pageField->fontMetrics().averageCharWidth() * roomForDigits);
  m_pageCountText = named(new QLabel(this), "pageCountText");
  m_next = toolButton(this, {"nextPage", "›", "Next page", "Next page (Page Down, Ctrl+Page Down)"},
                      [this] { turn(1); });
  m_zoomOut = toolButton(this, {"zoomOut", "−", "Zoom out", "Smaller (Ctrl+wheel, Ctrl+-)"},
                         [this] { zoomBy(-1); });
  m_zoomOut->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Minus));
  m_zoomChoice = buildZoomButton();
  m_zoomIn = toolButton(this, {"zoomIn", "+", "Zoom in", "Larger (Ctrl+wheel, Ctrl++)"},
                        [this] { zoomBy(1); });
  m_zoomIn->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Plus));
  m_search = toolButton(this, {"findInPages", "Find", "", "Find words on the pages (Ctrl+F)"},
                        [this] { find(); });
  return sideBySide(this,
                    {m_previous, labelFor(m_pageField, QStringLiteral("Page:")), m_pageField,
                     m_pageCountText, m_next, gap(), m_zoomOut, m_zoomChoice, m_zoomIn, m_search});
}

QToolButton* PagePane::buildZoomButton() {
  QToolButton* button =
      toolButton(this, {"zoomChoice", "400 %", "", "How large the page is shown"}, {});
  button->setPopupMode(QToolButton::InstantPopup);
  auto* menu = new QMenu(button);
  const auto add = [&](const QString& text, PageSizing::Fit fit, double zoom) {
    QAction* action = menu->addAction(text, this, [this, fit, zoom] { setFit(fit, zoom); });
    action->setCheckable(true);
    return action;
  };
  m_fitWidth = named(add(QStringLiteral("Fit &width"), PageSizing::Fit::Width, 1), "fitWidth");
  m_fitPage = named(add(QStringLiteral("Fit &page"), PageSizing::Fit::Page, 1), "fitPage");
  menu->addSeparator();
  for (const int percent : {50, 75, 100, 150, 200, 400}) {
    QAction* action = menu->addAction(QStringLiteral("%1 %").arg(percent), this, [this, percent] {
      setFit(PageSizing::Fit::Zoom, percent / 100.0);
    });
    action->setObjectName(QStringLiteral("zoom%1").arg(percent));
  }
  button->setMenu(menu);
  button->setMinimumWidth(button->sizeHint().width());
  return button;
}

QWidget* PagePane::buildWalkRow() {
  m_walkText = named(new ElidedLabel(this), "walkText");
  m_nextMatch = sideButton("nextMatch", QStringLiteral("Next match"),
                           QStringLiteral("Go on to the next match"), this, [this] { onNext(); });
  QPushButton* end = sideButton("stopMatches", QStringLiteral("End"),
                                QStringLiteral("End the walk through the matches (Escape)"), this,
                                [this] { onStop(); });
  m_walkRow = named(sideBySide(this, {{m_walkText, 1}, m_nextMatch, end}), "walkRow");
  m_walkRow->hide();
  return m_walkRow;
}

void PagePane::updateControls() {
  const bool isOpen = m_pageCount > 0;
  m_pageRow->setVisible(isOpen || m_isOpening);
  for (QWidget* control : std::initializer_list<QWidget*>{m_pageField, m_zoomChoice, m_search}) {
    control->setEnabled(isOpen);
  }
  m_previous->setEnabled(isOpen && m_page > 1);
  m_next->setEnabled(m_page < m_pageCount);
  m_fitWidth->setChecked(m_fit == PageSizing::Fit::Width);
  m_fitPage->setChecked(m_fit == PageSizing::Fit::Page);
  constexpr double almost = 1e-6;
  m_zoomOut->setEnabled(isOpen && zoom() > leastZoom + almost);
  m_zoomIn->setEnabled(isOpen && zoom() < mostZoom - almost);
  m_zoomChoice->setText(QStringLiteral("%1 %").arg(std::lround(zoom() * 100)));
}

/// The word told about, else the range; nothing for none.
std::optional<Picked> PagePane::picked() const {
  const int word = m_canvas->currentWord();
  if (word < 0) {
    const auto range = m_canvas->range();
    return range ? std::optional(Picked{*range}) : std::nullopt;
  }
  const ViewedWord* here = m_canvas->page().words.data() + word;
  Picked picked{{here->h, here->h, here->v, here->v}, here->text, here->lookupH, here->lookupV};
  if (word > 0 && here[-1].line == here->line) {
    picked.before = here[-1].text;
    picked.beforeH = here[-1].h;
  }
  return picked;
}

void PagePane::offerMenu(QPoint place) {
  tell({});
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  if (const auto picked = this->picked()) {
    fillMenu(menu, *picked);
  } else {
    menu->setObjectName(QStringLiteral("pageMenu"));
    menu->addAction(QStringLiteral("&Find words..."), this, [this] { find(); });
    menu->addAction(QStringLiteral("&Open the file again"), this, [this] { reload(); });
  }
  for (QAction* action : menu->actions()) {
    if (!action->isSeparator() && action->isEnabled()) {
      menu->setActiveAction(action); // Enter takes it, as the arrow keys go on from it
      break;
    }
  }
  menu->popup(m_canvas->mapToGlobal(place));
}

void PagePane::fillMenu(QMenu* menu, const Picked& picked) {
  const bool isWord = !picked.text.isEmpty();
  const QString title =
      (isWord ? quoted(picked.text, fontMetrics()) + QStringLiteral("   ") : QString()) +
      rangeText(picked.range);
  menu->setObjectName(isWord ? QStringLiteral("wordMenu") : QStringLiteral("areaMenu"));
  menu->setAccessibleName(title);
  menu->addSection(title);
  if (onMeant) {
    for (const Meaning meaning : meaningsOf(picked)) {
      menu->addAction(meaningText(meaning), this,
                      [this, meaning, picked] { onMeant(meaning, picked); })
          ->setEnabled(canMean(meaning, picked));
    }
    menu->addSeparator();
  }
  if (isWord) {
    menu->addAction(QStringLiteral("Copy the w&ord"), this,
                    [picked] { QApplication::clipboard()->setText(picked.text); });
  }
  menu->addAction(QStringLiteral("&Copy h,v"), this, [this] { copyPosition(); })
      ->setObjectName(QStringLiteral("copyPosition"));
}

void PagePane::copyPosition() {
  if (const auto picked = this->picked()) {
    // As it is written in a "[POS" token.
    QString position = rangeText(picked->range);
    position.remove(QStringLiteral("h ")).replace(QStringLiteral(", v "), QStringLiteral(","));
    QApplication::clipboard()->setText(position);
    tell(QStringLiteral("Copied: %1").arg(position));
  }
}

void PagePane::tellCurrent() {
  const auto picked = this->picked();
  QString text;
  if (picked && !picked->text.isEmpty()) {
    text = rangeText(picked->range) + QStringLiteral("   ") + picked->text;
    if (const QString mark = m_canvas->markText(m_canvas->currentWord()); !mark.isEmpty()) {
      text += QStringLiteral("   (%1)").arg(mark);
    }
  } else if (picked) {
    text = QStringLiteral("%1   (words in it: %2)")
               .arg(rangeText(picked->range))
               .arg(m_canvas->wordsInRange().size());
  } else if (m_pageCount > 0) {
    text = QStringLiteral("Click a word, or drag a rectangle over words.");
  }
  m_wordText->setText(text);
  m_canvas->setAccessibleDescription(text);
}

void PagePane::tell(const QString& text) {
  m_told->setText(text);
  m_told->setVisible(!text.isEmpty());
}

} // namespace folivex
