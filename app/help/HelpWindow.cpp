#include "app/help/HelpWindow.h"

#include "app/help/HelpPages.h"
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

/// Page and anchor of an address inside the help.
QString placeOf(const QUrl& address) {
  const QString page = address.fileName().section(u'.', 0, 0);
  return address.hasFragment() ? page + u'#' + address.fragment() : page;
}

} // namespace

HelpWindow::HelpWindow(Dialogs& dialogs, QWidget* parent) : QDialog(parent), m_dialogs(dialogs) {
  setObjectName(QStringLiteral("helpWindow"));
  setWindowTitle(QStringLiteral("Folivex Help"));
  setWindowFlags(Qt::Window);
  setModal(false);
  buildControls();
  fillContents();
  connectControls();
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
  m_split = new QSplitter(this);
  m_split->addWidget(buildSide());
  m_split->addWidget(m_page);
  m_split->setStretchFactor(1, 1);
  m_split->setChildrenCollapsible(false);
  stack(this, {buildTools(), {m_split, 1}});
  constexpr QSize startSize(1040, 740);
  resizeOnScreen(this, startSize);
  const int letter = fontMetrics().averageCharWidth();
  constexpr int sideLetters = 44;
  m_split->setSizes({sideLetters * letter, startSize.width() - sideLetters * letter});
}

QWidget* HelpWindow::buildTools() {
  m_back = sideButton("helpBack", QStringLiteral("&Back"),
                      QStringLiteral("The page shown before (Alt+Left)"), this);
  m_forward = sideButton("helpForward", QStringLiteral("&Forward"),
                         QStringLiteral("Undo a step back (Alt+Right)"), this);
  m_home = sideButton("helpHome", QStringLiteral("&Home"), QStringLiteral("The first page"), this);
  m_sought =
      named(new QLineEdit(this), "helpSought", "Find words in all pages of the help (Ctrl+F)");
  m_sought->setPlaceholderText(QStringLiteral("Words to find"));
  m_sought->setClearButtonEnabled(true);
  return sideBySide(this, {m_back,
                           m_forward,
                           m_home,
                           gap(),
                           labelFor(m_sought, QStringLiteral("&Search:")),
                           {m_sought, 1}});
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

  m_side = new QStackedWidget(this);
  m_side->addWidget(m_contents);
  m_side->addWidget(found);
  return m_side;
}

void HelpWindow::fillContents() {
  for (const HelpPage& page : helpPages()) {
    const QString name = QString::fromLatin1(page.name);
    auto* entry = new QTreeWidgetItem(m_contents, {QString::fromLatin1(page.title)});
    entry->setData(0, placeRole, name);
    for (const HelpSection& section : helpSections(name)) {
      auto* part = new QTreeWidgetItem(entry, {section.title});
      part->setData(0, placeRole, QString(name + u'#' + section.anchor));
      part->setToolTip(0, section.title); // there may be no room for all of it
    }
  }
}

void HelpWindow::connectControls() {
  connect(m_back, &QPushButton::clicked, m_page, &QTextBrowser::backward);
  connect(m_forward, &QPushButton::clicked, m_page, &QTextBrowser::forward);
  connect(m_home, &QPushButton::clicked, this, [this] { goTo(helpPlace(QString())); });
  connect(m_page, &QTextBrowser::anchorClicked, this, [this](const QUrl& link) { follow(link); });
  connect(m_page, &QTextBrowser::sourceChanged, this,
          [this](const QUrl& address) { arrived(address); });
  connect(m_page, &QTextBrowser::historyChanged, this, [this] {
    m_back->setEnabled(m_page->isBackwardAvailable());
    m_forward->setEnabled(m_page->isForwardAvailable());
  });
  m_back->setEnabled(false);
  m_forward->setEnabled(false);
  const auto openEntry = [this](QTreeWidgetItem* entry) {
    if (entry != nullptr) {
      goTo(entry->data(0, placeRole).toString());
    }
  };
  connect(m_contents, &QTreeWidget::currentItemChanged, this, openEntry);
  connect(m_contents, &QTreeWidget::itemClicked, this, openEntry);
  connect(m_sought, &QLineEdit::textChanged, this, [this] { find(); });
  connect(m_sought, &QLineEdit::returnPressed, m_hits, [this] {
    if (m_hits->count() > 0) {
      m_hits->setFocus();
      m_hits->setCurrentRow(0);
    }
  });
  connect(m_hits, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* hit) {
    if (hit != nullptr) {
      goTo(hit->data(placeRole).toString());
    }
  });
  auto* toSearch = new QAction(this);
  toSearch->setShortcut(QKeySequence::Find);
  connect(toSearch, &QAction::triggered, m_sought, [this] {
    m_sought->setFocus();
    m_sought->selectAll();
  });
  addAction(toSearch);
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
  const QUrl address(helpAddress(place));
  if (m_page->source() != address) {
    m_page->setSource(address);
  } else if (address.hasFragment()) {
    m_page->scrollToAnchor(address.fragment()); // the person may have scrolled away
  }
}

void HelpWindow::follow(const QUrl& link) {
  const QUrl address = m_page->source().resolved(link);
  if (address.scheme() == QLatin1String("qrc")) {
    goTo(placeOf(address));
  } else {
    m_dialogs.openOutside(link.toString());
  }
}

void HelpWindow::arrived(const QUrl& address) {
  // The browser itself still names the page before.
  const QString place = placeOf(address);
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
  const bool seeks = !HelpSearch::words(m_sought->text()).isEmpty();
  m_side->setCurrentIndex(seeks ? 1 : 0);
  {
    const QSignalBlocker quiet(m_hits);
    m_hits->clear();
    if (seeks) {
      if (m_search == nullptr) {
        m_search = std::make_unique<HelpSearch>();
      }
      for (const HelpHit& hit : m_search->find(m_sought->text())) {
        auto* entry = new QListWidgetItem(hit.title + u'\n' + hit.excerpt, m_hits);
        entry->setData(placeRole, hit.place);
      }
    }
  }
  tellHits(m_hits->count());
  highlight();
}

void HelpWindow::tellHits(qsizetype count) {
  m_hitCount->setText(count == 0 ? QStringLiteral("No page has all of these words. Fewer words, or "
                                                  "the beginning of a word, find more.")
                                 : QStringLiteral("%1 place(s) found").arg(count));
}

void HelpWindow::highlight() {
  QList<QTextEdit::ExtraSelection> marks;
  QTextCharFormat format;
  format.setBackground(palette().color(QPalette::Highlight));
  format.setForeground(palette().color(QPalette::HighlightedText));
  for (const QString& word : HelpSearch::words(m_sought->text())) {
    for (QTextCursor at = m_page->document()->find(word); !at.isNull();
         at = m_page->document()->find(word, at)) {
      marks.append({at, format});
    }
  }
  m_page->setExtraSelections(marks);
}

} // namespace folivex
