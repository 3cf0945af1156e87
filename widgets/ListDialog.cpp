#include "widgets/ListDialog.h"

#include "widgets/Dialogs.h"
#include "widgets/ListTable.h"

#include <QMenuBar>
#include <QRegularExpression>
#include <QVBoxLayout>

namespace folivex {

namespace {

/// A long path may go on in the next line behind any separator.
QString breakable(QString text) {
  static const QRegularExpression separators(QStringLiteral("([/\\\\])"));
  return text.replace(separators, QStringLiteral("\\1\u200B"));
}

} // namespace

ListDialog::ListDialog(const char* name, const QString& title, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), m_dialogs(dialogs), m_countLine(new QLabel(this)),
      m_menus(new QMenuBar(this)), m_notice(new QLabel(this)) {
  setObjectName(QString::fromLatin1(name));
  setWindowTitle(title);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  m_menus->setNativeMenuBar(false); // belongs to this window, not to the program
  m_countLine->setObjectName(QStringLiteral("countLine"));
  m_notice->setObjectName(QStringLiteral("notice"));
  m_notice->setTextFormat(Qt::PlainText); // paths are no markup
  m_notice->setWordWrap(true);
  m_notice->setSizePolicy(QSizePolicy::Ignored, m_notice->sizePolicy().verticalPolicy());
  m_notice->hide();
}

QMenu* ListDialog::addMenu(const QString& title) {
  QMenu* menu = m_menus->addMenu(title);
  menu->setToolTipsVisible(true);
  return menu;
}

void ListDialog::layOut(QWidget* above, ListTable* table, std::initializer_list<Placed> buttons) {
  auto* all = new QVBoxLayout(this);
  all->setMenuBar(m_menus);
  if (above) {
    all->addWidget(above);
  }
  all->addWidget(table, 1);
  for (QWidget* below : {static_cast<QWidget*>(m_countLine), static_cast<QWidget*>(m_notice),
                         sideBySide(this, buttons)}) {
    all->addWidget(below);
  }
}

void ListDialog::resizeToShow(const ListTable& table, int rows, int beside) {
  const QMargins margins = layout()->contentsMargins();
  const int rowHeight = table.fontMetrics().height() * 3 / 2;
  resizeOnScreen(this, QSize(table.preferredWidth() + margins.left() + margins.right() + beside,
                             sizeHint().height() - table.sizeHint().height() + rows * rowHeight));
}

void ListDialog::tell(const CommandWords& words) {
  if (!words.notice.isEmpty() ||
      !m_notice->isHidden()) { // else a long scan would lay out for each row
    m_notice->setText(breakable(words.notice));
    m_notice->setToolTip(cellToolTip(words.notice));
    m_notice->setVisible(!words.notice.isEmpty());
  }
  if (!words.message.isEmpty()) {
    m_dialogs.message(this, words.message);
  }
}

} // namespace folivex
