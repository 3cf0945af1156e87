#include "widgets/ListTable.h"

#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int rowPadding = 8; // pixels
constexpr float gridStrength = 0.2F;

QLabel* whenEmptyLabel(QWidget* viewport) {
  auto* label = new QLabel(viewport);
  label->setObjectName(QStringLiteral("whenEmpty"));
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setForegroundRole(QPalette::PlaceholderText);
  label->setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* layout = new QVBoxLayout(viewport);
  layout->addWidget(label);
  return label;
}

} // namespace

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  QColor line = option.palette.color(QPalette::Text);
  line.setAlphaF(gridStrength);
  const QRect& cell = option.rect;
  painter->setPen(line);
  painter->drawLine(cell.bottomLeft(), cell.bottomRight());
  painter->drawLine(cell.topRight(), cell.bottomRight() - QPoint(0, 1));
}

ListTable::ListTable(QAbstractItemModel& model, QWidget* parent)
    : QTableView(parent), m_whenEmpty(whenEmptyLabel(viewport())) {
  setModel(&model);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setShowGrid(false); // the delegate does
  setItemDelegate(new GridDelegate(this));
  setWordWrap(false);
  setTextElideMode(Qt::ElideMiddle); // both ends of paths and addresses tell something
  setTabKeyNavigation(false);
  setContextMenuPolicy(Qt::CustomContextMenu);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  setCornerButtonEnabled(false);
  // Rows of one height, else a long list would be measured row by row.
  QHeaderView* side = verticalHeader();
  side->setSectionResizeMode(QHeaderView::Fixed);
  side->setDefaultSectionSize(fontMetrics().height() + rowPadding);
  side->setHighlightSections(false);
  horizontalHeader()->setHighlightSections(false);
}

void ListTable::setInitialWidths(std::span<const int> widths) {
  QHeaderView* header = horizontalHeader();
  bool isCut = false;
  int column = 0;
  for (const int width : widths) {
    isCut = isCut || header->sectionSizeHint(column) > width;
    setColumnWidth(column++, width);
  }
  if (isCut) {
    header->setMinimumHeight(header->sizeHint().height() + fontMetrics().lineSpacing());
  }
}

int ListTable::preferredWidth() const {
  int width = 2 * frameWidth();
  if (!verticalHeader()->isHidden()) {
    width += verticalHeader()->sizeHint().width();
  }
  for (int column = 0; column < model()->columnCount(); ++column) {
    width += columnWidth(column); // 0 when hidden
  }
  return width;
}

void ListTable::setWhenEmpty(const QString& text) {
  m_whenEmpty->setText(text);
}

void ListTable::showWhetherEmpty() {
  m_whenEmpty->setVisible(model()->rowCount() == 0);
}

QVariant headerAlignment() {
  return int(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextWordWrap;
}

QString cellToolTip(const QString& text) {
  return text.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped());
}

} // namespace folivex
