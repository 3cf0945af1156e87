// The menus that come up at what the person points at.
#include "app/viewer/PageArea.h"
#include "app/viewer/PagePane.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>

namespace folivex {

namespace {

/// Text of a page is no mnemonic, and may be of any length.
QString quoted(const QString& text, const QFontMetrics& metrics) {
  constexpr int widest = 240;
  QString shown = metrics.elidedText(text, Qt::ElideMiddle, widest);
  return u'"' + shown.replace(u'&', QStringLiteral("&&")) + u'"';
}

} // namespace

PickedPlace PagePane::placeOf(int word) const {
  const std::vector<ViewedWord>& words = m_canvas->page().words;
  const ViewedWord& here = words[static_cast<std::size_t>(word)];
  PickedPlace place{here.text, here.h, here.v, here.lookupH, here.lookupV, m_page};
  if (word > 0) {
    const ViewedWord& before = words[static_cast<std::size_t>(word) - 1];
    if (before.line == here.line) {
      place.before = before.text;
      place.beforeH = before.h;
    }
  }
  return place;
}

QMenu* PagePane::newMenu(const QString& title) {
  tell({});
  auto* menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setAccessibleName(title);
  if (!title.isEmpty()) {
    menu->addSection(title);
  }
  return menu;
}

void PagePane::popUp(QMenu* menu, QPoint place) {
  for (QAction* action : menu->actions()) {
    if (!action->isSeparator() && action->isEnabled()) {
      menu->setActiveAction(action); // Enter takes it, as the arrow keys go on from it
      break;
    }
  }
  menu->popup(m_canvas->mapToGlobal(place));
}

void PagePane::pickWord(int word, QPoint place) {
  const PickedPlace picked = placeOf(word);
  QMenu* menu = newMenu(quoted(picked.text, fontMetrics()) + QStringLiteral("   ") +
                        positionText(picked.h, picked.v));
  menu->setObjectName(QStringLiteral("wordMenu"));
  if (onWordMeant) {
    for (const WordMeaning meaning : wordMeanings()) {
      menu->addAction(meaningText(meaning), this,
                      [this, meaning, picked] { onWordMeant(meaning, picked); })
          ->setEnabled(canMean(meaning, picked));
    }
    menu->addSeparator();
  }
  menu->addAction(QStringLiteral("Copy the w&ord"), this,
                  [picked] { QApplication::clipboard()->setText(picked.text); });
  menu->addAction(QStringLiteral("&Copy h,v"), this, [this] { copyPosition(); })
      ->setObjectName(QStringLiteral("copyPosition"));
  popUp(menu, place);
}

void PagePane::pickRange(const PositionRange& range, QPoint place) {
  const PickedArea picked{range, m_page};
  QMenu* menu = newMenu(rangeText(range));
  menu->setObjectName(QStringLiteral("areaMenu"));
  if (onAreaMeant) {
    for (const AreaMeaning meaning : areaMeanings()) {
      menu->addAction(meaningText(meaning), this,
                      [this, meaning, picked] { onAreaMeant(meaning, picked); });
    }
    menu->addSeparator();
  }
  menu->addAction(QStringLiteral("&Copy h,v"), this, [this] { copyPosition(); })
      ->setObjectName(QStringLiteral("copyPosition"));
  popUp(menu, place);
}

void PagePane::offerPage(QPoint place) {
  QMenu* menu = newMenu({});
  menu->setObjectName(QStringLiteral("pageMenu"));
  menu->addAction(QStringLiteral("&Find words..."), this, [this] { find(); });
  menu->addAction(QStringLiteral("&Open the file again"), this, [this] { reload(); });
  popUp(menu, place);
}

QString PagePane::currentPosition() const {
  if (const int word = m_canvas->currentWord(); word >= 0) {
    const ViewedWord& told = m_canvas->page().words[static_cast<std::size_t>(word)];
    return positionText(told.h, told.v);
  }
  return m_canvas->range() ? rangeText(*m_canvas->range()) : QString();
}

void PagePane::copyPosition() {
  QString position = currentPosition();
  if (position.isEmpty()) {
    return;
  }
  // As it is written in a "[POS" token.
  position.remove(QStringLiteral("h ")).replace(QStringLiteral(", v "), QStringLiteral(","));
  QApplication::clipboard()->setText(position);
  tell(QStringLiteral("Copied: %1").arg(position));
}

void PagePane::tellCurrent() {
  const QString position = currentPosition();
  const int word = m_canvas->currentWord();
  QString text;
  if (word >= 0) {
    text = position + QStringLiteral("   ") +
           m_canvas->page().words[static_cast<std::size_t>(word)].text;
    if (const QString mark = m_canvas->markText(word); !mark.isEmpty()) {
      text += QStringLiteral("   (%1)").arg(mark);
    }
  } else if (!position.isEmpty()) {
    text = QStringLiteral("%1   (words in it: %2)").arg(position).arg(m_canvas->wordsInRange());
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
