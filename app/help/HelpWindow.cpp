#include "app/help/HelpWindow.h"

#include "app/help/HelpPages.h"
#include "app/help/HelpSearch.h"
#include "widgets/Controls.h"
#include "widgets/Dialogs.h"

#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QWindow>

namespace folivex {

namespace {

constexpr int placeRole = Qt::UserRole;

/// The look of the pages, in the colours that the windows have just now.
QString styleSheetOf(const QPalette& palette) {
  const QString shade = palette.color(QPalette::Button).name();
  const QString line = palette.color(QPalette::Disabled, QPalette::Text).name();
  return QStringLiteral("a { color: %1; text-decoration: none; }"
                        "code, pre, kbd { font-family: monospace; background-color: %2; }"
                        "pre { margin-left: 12px; }"
                        "th { background-color: %2; }"
                        "table { border-collapse: collapse; margin: 6px 0px 10px 0px; }"
                        "th, td { border: 1px solid %3; padding: 4px; }"
                        "h1 { margin-bottom: 10px; }"
                        "h2 { margin-top: 22px; margin-bottom: 6px; }"
                        "h3 { margin-top: 14px; margin-bottom: 4px; }"
                        "p { margin-top: 4px; margin-bottom: 8px; }"
                        "li { margin-bottom: 4px; }")
      .arg(palette.color(QPalette::Link).name(), shade, line);
}

/// Where the pages lie for QTextBrowser; a place behind it is an address.
QString base() {
  return QStringLiteral("qrc:/help/");
}

} // namespace

HelpWindow::HelpWindow(Dialogs& dialogs, QWidget* parent) : QDialog(parent), m_dialogs(dialogs) {
  setObjectName(QStringLiteral("helpWindow"));
  setWindowTitle(QStringLiteral("Folivex Help"));
  setWindowFlags(Qt::Window);
  setModal(false);
  buildControls();
  applyLook();
  goTo(helpPlace(QString()));
}

HelpWindow::~HelpWindow() {
  // A field that loses the cursor while the window goes must not ask for what is gone already.
  hide();
}

void HelpWindow::buildControls() {
  m_page = named(new QTextBrowser(this), "helpPage");
  m_page->setAccessibleName(QStringLiteral("Page of the help"));
  m_page->setOpenLinks(false);
  m_page->document()->setDocumentMargin(18);
  connect(m_page, &QTextBrowser::anchorClicked, this, &HelpWindow::follow);
  connect(m_page, &QTextBrowser::sourceChanged, this, &HelpWindow::arrived);
  QWidget* tools = buildTools();
  auto* split = new QSplitter(this);
  split->addWidget(buildSide());
  split->addWidget(m_page);
  split->setStretchFactor(1, 1);
  split->setChildrenCollapsible(false);
  stack(this, {tools, {split, 1}});
  constexpr QSize startSize(1040, 740);
  resizeOnScreen(this, startSize);
  const int letter = fontMetrics().averageCharWidth();
  constexpr int sideLetters = 44;
  split->setSizes({sideLetters * letter, startSize.width() - sideLetters * letter});
}

QWidget* HelpWindow::buildTools() {
  QPushButton* back = sideButton("helpBack", QStringLiteral("&Back"),
                                 QStringLiteral("The page shown before (Alt+Left)"), this,
                                 [this] { m_page->backward(); });
  QPushButton* forward = sideButton("helpForward", QStringLiteral("&Forward"),
                                    QStringLiteral("Undo a step back (Alt+Right)"), this,
                                    [this] { m_page->forward(); });
  QPushButton* home =
      sideButton("helpHome", QStringLiteral("&Home"), QStringLiteral("The first page"), this,
                 [this] { goTo(helpPlace(QString())); });
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(m_page, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(m_page, &QTextBrowser::forwardAvailable, forward, &QWidget::setEnabled);
  m_sought =
      named(new QLineEdit(this), "helpSought", "Find words in all pages of the help (Ctrl+F)");
  m_sought->setPlaceholderText(QStringLiteral("Words to find"));
  m_sought->setClearButtonEnabled(true);
  connect(m_sought, &QLineEdit::textChanged, this, &HelpWindow::find);
  connect(m_sought, &QLineEdit::returnPressed, this, [this] {
    if (m_hits->count() > 0) {
      m_hits->setFocus();
      m_hits->setCurrentRow(0);
    }
  });
  new QShortcut(QKeySequence::Find, this, [this] {
    m_sought->setFocus();
    m_sought->selectAll();
  });
  QLabel* label = labelFor(m_sought, QStringLiteral("&Search:"));
  return sideBySide(this, {back, forward, home, gap(), label, {m_sought, 1}});
}

QWidget* HelpWindow::buildSide() {
  m_contents = named(new QTreeWidget(this), "helpContents", "Pages of the help and their parts");
  m_contents->setAccessibleName(QStringLiteral("Contents"));
  m_contents->setHeaderHidden(true);
  m_contents->setUniformRowHeights(true);

  auto* found = new QWidget(this);
  m_hitCount = named(new QLabel(found), "helpHitCount");
  m_hitCount->setWordWrap(true);
  m_hits = named(new QListWidget(found), "helpHits", "Where the words were found");
  m_hits->setAccessibleName(QStringLiteral("Places found"));
  m_hits->setWordWrap(true);
  m_hits->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_hits->setAlternatingRowColors(true);
  constexpr int air = 3;
  m_hits->setSpacing(air);
  stack(found, {m_hitCount, {m_hits, 1}});
  found->layout()->setContentsMargins(0, 0, 0, 0);

  connect(m_hits, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* hit) {
    if (hit != nullptr) {
      goTo(hit->data(placeRole).toString());
    }
  });
  fillContents();
  m_side = new QStackedWidget(this);
  m_side->addWidget(m_contents);
  m_side->addWidget(found);
  return m_side;
}

void HelpWindow::fillContents() {
  for (const QString& page : helpPages()) {
    QTreeWidgetItem* top = nullptr;
    for (const HelpSection& section : helpSections(page)) {
      if (section.level > 2) {
        continue;
      }
      auto* entry = top == nullptr ? new QTreeWidgetItem(m_contents) : new QTreeWidgetItem(top);
      entry->setText(0, section.heading);
      entry->setToolTip(0, section.heading); // there may be no room for all of it
      entry->setData(0, placeRole, section.place);
      top = top == nullptr ? entry : top;
    }
  }
  const auto openEntry = [this](QTreeWidgetItem* entry) {
    if (entry != nullptr) {
      goTo(entry->data(0, placeRole).toString());
    }
  };
  connect(m_contents, &QTreeWidget::currentItemChanged, this, openEntry);
  connect(m_contents, &QTreeWidget::itemClicked, this, openEntry);
}

void HelpWindow::openTopic(const QString& topic) {
  m_sought->clear();
  goTo(helpPlace(topic));
  standOverModalWindow();
  show();
  raise();
  activateWindow();
}

void HelpWindow::standOverModalWindow() {
  // A dialog that is asked for help is mostly modal, and would let nobody turn the page: only what
  // belongs to it stays alive.
  QWidget* modal = QApplication::activeModalWidget();
  if (modal == nullptr || modal == this) {
    return;
  }
  hide();
  winId(); // makes the window of the system, which is not there before it was shown
  windowHandle()->setTransientParent(modal->windowHandle());
}

void HelpWindow::reject() {
  if (isSearching()) {
    m_sought->clear();
    return;
  }
  QDialog::reject();
}

void HelpWindow::changeEvent(QEvent* event) {
  if (m_page != nullptr &&
      (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)) {
    applyLook();
  }
  QDialog::changeEvent(event);
}

void HelpWindow::applyLook() {
  const QString look = styleSheetOf(palette());
  if (m_page->document()->defaultStyleSheet() == look) {
    return;
  }
  m_page->document()->setDefaultStyleSheet(look);
  if (!m_page->source().isEmpty()) {
    m_page->reload(); // a style sheet counts for the next HTML only
    highlight();
  }
}

void HelpWindow::goTo(const QString& place) {
  const QUrl address(base() + place);
  if (m_page->source() != address) {
    m_page->setSource(address);
  } else if (address.hasFragment()) {
    m_page->scrollToAnchor(address.fragment()); // the person may have scrolled away
  }
}

void HelpWindow::follow(const QUrl& link) {
  const QUrl address = m_page->source().resolved(link);
  if (address.toString().startsWith(base())) {
    goTo(address.toString().sliced(base().size()));
  } else {
    m_dialogs.openOutside(link.toString());
  }
}

void HelpWindow::arrived(const QUrl& address) {
  // The browser itself still names the page before.
  const QString place = address.toString().sliced(base().size());
  const QSignalBlocker quiet(m_contents);
  for (QTreeWidgetItemIterator at(m_contents); *at != nullptr; ++at) {
    // A page comes before its parts, one of which fits better.
    const QString entry = (*at)->data(0, placeRole).toString();
    if (entry == place || entry == place.section(u'#', 0, 0)) {
      m_contents->setCurrentItem(*at);
    }
  }
  if (QTreeWidgetItem* current = m_contents->currentItem()) {
    (current->parent() == nullptr ? current : current->parent())->setExpanded(true);
    m_contents->scrollToItem(current);
  }
  highlight();
}

bool HelpWindow::isSearching() const {
  return m_side->currentIndex() == 1;
}

void HelpWindow::find() {
  const QStringList words = helpWords(m_sought->text());
  m_side->setCurrentIndex(words.isEmpty() ? 0 : 1);
  {
    const QSignalBlocker quiet(m_hits);
    m_hits->clear();
    for (const HelpHit& hit : findInHelp(words)) {
      auto* entry = new QListWidgetItem(hit.title + u'\n' + hit.excerpt, m_hits);
      entry->setData(placeRole, hit.place);
    }
  }
  m_hitCount->setText(m_hits->count() == 0
                          ? QStringLiteral("No page has all of these words. Fewer words, or the "
                                           "beginning of a word, find more.")
                          : QStringLiteral("%1 place(s) found").arg(m_hits->count()));
  highlight();
}

void HelpWindow::highlight() {
  QList<QTextEdit::ExtraSelection> marks;
  QTextCharFormat format;
  format.setBackground(palette().color(QPalette::Highlight));
  format.setForeground(palette().color(QPalette::HighlightedText));
  for (const QString& word : helpWords(m_sought->text())) {
    for (QTextCursor at = m_page->document()->find(word); !at.isNull();
         at = m_page->document()->find(word, at)) {
      marks.append({at, format});
    }
  }
  m_page->setExtraSelections(marks);
}

} // namespace folivex
