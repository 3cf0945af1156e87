#include "app/viewer/PageStrip.h"

#include "app/viewer/PageLoader.h"

#include <QAbstractListModel>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cmath>

namespace folivex {

namespace {

constexpr qsizetype pictureBytes = qsizetype{48} << 20;
/// Window units: the largest that a small page becomes, and the air around it.
constexpr QSize largestSmallPage(150, 212);
constexpr int airBeside = 10;
constexpr int airBelow = 8;
/// Below the line with number and title: room for the frame of the current page.
constexpr int airAbove = 8;

QColor blended(const QColor& over, const QColor& ground, double share) {
  const auto mix = [share](int a, int b) {
    return static_cast<int>(std::lround(a * share + b * (1 - share)));
  };
  return {mix(over.red(), ground.red()), mix(over.green(), ground.green()),
          mix(over.blue(), ground.blue())};
}

} // namespace

/// One row a page.
class PageStrip::Pages : public QAbstractListModel {
public:
  explicit Pages(const PageStrip& strip) : m_strip(strip) {}

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : m_count;
  }
  QVariant data(const QModelIndex& index, int role) const override {
    const int page = index.row() + 1;
    if (role == Qt::DisplayRole) {
      return QString::number(page);
    }
    if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole) {
      return toldOf(page);
    }
    return {};
  }
  void setCount(int count) {
    beginResetModel();
    m_count = count;
    endResetModel();
  }

private:
  QString toldOf(int page) const {
    const PageBand* band = m_strip.bandOf(page);
    if (band == nullptr) {
      return m_strip.m_bands ? QStringLiteral("Page %1, left over").arg(page)
                             : QStringLiteral("Page %1").arg(page);
    }
    return QStringLiteral("Page %1, page %2 of %3 in %4")
        .arg(page)
        .arg(page - band->firstPage + 1)
        .arg(band->lastPage - band->firstPage + 1)
        .arg(band->title);
  }

  const PageStrip& m_strip;
  int m_count = 0;
};

/// A cell: its band as the ground, a line with number and title, the page below.
class PageStrip::Look : public QStyledItemDelegate {
public:
  explicit Look(PageStrip& strip) : m_strip(strip) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    const int page = index.row() + 1;
    const PageBand* band = m_strip.bandOf(page);
    painter->save();
    painter->fillRect(option.rect, groundOf(band, option.palette));
    paintCaption(painter, option, page, band);
    const bool isLeftOver = band == nullptr && m_strip.m_bands;
    paintPage(painter, option, page, isLeftOver);
    painter->restore();
  }
  QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                 const QModelIndex& /*index*/) const override {
    return m_strip.gridSize();
  }

private:
  QColor groundOf(const PageBand* band, const QPalette& palette) const {
    const QColor base = palette.color(QPalette::Base);
    if (band == nullptr) {
      return m_strip.m_bands ? blended(palette.color(QPalette::Text), base, 0.14) : base;
    }
    const bool isOdd = (band - m_strip.m_bands->data()) % 2 != 0;
    return blended(palette.color(QPalette::Highlight), base, isOdd ? 0.34 : 0.14);
  }

  void paintCaption(QPainter* painter, const QStyleOptionViewItem& option, int page,
                    const PageBand* band) const {
    QString text = QString::number(page);
    if (band != nullptr && band->firstPage == page) {
      text += QStringLiteral("  ") + band->title;
    }
    const bool isCurrent = m_strip.currentPage() == page;
    QFont font = option.font;
    font.setBold(isCurrent);
    painter->setFont(font);
    painter->setPen(option.palette.color(QPalette::Text));
    const QFontMetrics metrics(font);
    const QRect line = option.rect.adjusted(airBeside, 3, -airBeside, 0);
    painter->drawText(line, Qt::AlignTop | Qt::AlignLeft | Qt::TextSingleLine,
                      metrics.elidedText(text, Qt::ElideMiddle, line.width()));
  }

  void paintPage(QPainter* painter, const QStyleOptionViewItem& option, int page,
                 bool isLeftOver) const {
    const int caption = option.fontMetrics.height() + airAbove;
    const QRect room = option.rect.adjusted(airBeside, caption, -airBeside, -airBelow);
    const QImage* picture = m_strip.m_pictures.object(page);
    const bool isThere = picture != nullptr && !picture->isNull();
    QSize size = isThere ? picture->size() : largestSmallPage;
    size = size.scaled(room.size().boundedTo(largestSmallPage), Qt::KeepAspectRatio);
    QRect sheet(QPoint(), size);
    sheet.moveCenter(room.center());
    sheet.moveTop(room.top());
    painter->fillRect(sheet, Qt::white); // paper, whatever the look of the windows
    if (isThere) {
      painter->setRenderHint(QPainter::SmoothPixmapTransform);
      painter->setOpacity(isLeftOver ? 0.45 : 1);
      painter->drawImage(sheet, *picture);
      painter->setOpacity(1);
    }
    const bool isCurrent = m_strip.currentPage() == page;
    const bool hasFocus = isCurrent && (option.state & QStyle::State_HasFocus) != 0;
    const QPalette::ColorRole role = isCurrent ? QPalette::Highlight : QPalette::Mid;
    painter->setPen(QPen(option.palette.color(role), hasFocus ? 4 : isCurrent ? 3 : 1));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(isCurrent ? sheet.adjusted(-2, -2, 2, 2) : sheet.adjusted(-1, -1, 0, 0));
  }

  PageStrip& m_strip;
};

PageStrip::PageStrip(QWidget* parent)
    : QListView(parent), m_pictures(pictureBytes), m_pages(std::make_unique<Pages>(*this)),
      m_look(std::make_unique<Look>(*this)) {
  setObjectName(QStringLiteral("pageStrip"));
  setAccessibleName(QStringLiteral("Pages"));
  setModel(m_pages.get());
  setItemDelegate(m_look.get());
  setFlow(QListView::LeftToRight);
  setWrapping(true);
  setResizeMode(QListView::Adjust);
  setUniformItemSizes(true);
  setEditTriggers(NoEditTriggers);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // Always there, else its coming would change the room that decides whether it is needed.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  layOut();
}

PageStrip::~PageStrip() {
  m_loader.reset();
  setModel(nullptr);
}

void PageStrip::setLibrary(CPDFTextDumpInit& library) {
  m_loader = std::make_unique<PageLoader>(library, PageLoader::Reads::Pictures);
  m_loader->onPage = [this](const std::shared_ptr<const ViewedPage>& page) { arrived(*page); };
}

void PageStrip::showFile(const ViewedFile& file, int pageCount) {
  if (file.path != m_file.path) {
    m_bands.reset();
  }
  m_file = file;
  m_pictures.clear();
  if (m_loader) {
    m_loader->open(pageCount > 0 ? file : ViewedFile());
  }
  m_pages->setCount(pageCount);
  setCurrentPage(1);
}

void PageStrip::setBands(std::optional<std::vector<PageBand>> bands) {
  if (bands) {
    std::ranges::stable_sort(*bands, {}, &PageBand::firstPage);
  }
  if (bands != m_bands) {
    m_bands = std::move(bands);
    viewport()->update();
  }
}

/// Of bands that overlap, the one that begins last; null for a page in none.
const PageBand* PageStrip::bandOf(int page) const {
  if (!m_bands) {
    return nullptr;
  }
  const auto behind = std::ranges::upper_bound(*m_bands, page, {}, &PageBand::firstPage);
  const bool isIn = behind != m_bands->begin() && page <= std::prev(behind)->lastPage;
  return isIn ? &*std::prev(behind) : nullptr;
}

void PageStrip::setCurrentPage(int page) {
  const QModelIndex index = m_pages->index(page - 1);
  m_isQuiet = true;
  setCurrentIndex(index);
  m_isQuiet = false;
  scrollTo(index);
}

int PageStrip::currentPage() const {
  return currentIndex().isValid() ? currentIndex().row() + 1 : 0;
}

void PageStrip::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  if (current.isValid() && !m_isQuiet) {
    onPageChosen(current.row() + 1);
  }
}

/// As many columns as there is room for small pages of their largest size.
void PageStrip::layOut() {
  const int room = std::max(maximumViewportSize().width() - 1, 1); // more than that is wrapped
  m_columns = std::max(room / (largestSmallPage.width() + 2 * airBeside), 1);
  const int width = room / m_columns;
  const int across = std::clamp(width - 2 * airBeside, 1, largestSmallPage.width());
  const int down = across * largestSmallPage.height() / largestSmallPage.width();
  const QSize cell(width, down + fontMetrics().height() + airAbove + airBelow);
  if (cell != gridSize()) {
    setGridSize(cell);
    verticalScrollBar()->setSingleStep(cell.height() / 4);
  }
}

void PageStrip::resizeEvent(QResizeEvent* event) {
  layOut();
  QListView::resizeEvent(event);
}

/// Whatever has brought pages into sight.
void PageStrip::paintEvent(QPaintEvent* event) {
  QListView::paintEvent(event);
  request();
}

void PageStrip::changeEvent(QEvent* event) {
  QListView::changeEvent(event);
  if (event->type() == QEvent::FontChange) {
    layOut();
  }
}

/// Asks for the pictures in sight that are not here, then for a screen of them below and above.
void PageStrip::request() {
  if (!m_loader) {
    return;
  }
  const int firstRow = verticalOffset() / gridSize().height();
  const int rows = viewport()->height() / gridSize().height() + 2;
  std::vector<int> missing;
  for (const int fromRow : {firstRow, firstRow + rows, firstRow - rows}) {
    const int last = std::min((fromRow + rows) * m_columns, m_pages->rowCount());
    for (int page = std::max(fromRow * m_columns + 1, 1); page <= last; ++page) {
      if (!m_pictures.contains(page)) {
        missing.push_back(page);
      }
    }
  }
  m_loader->want(missing,
                 {PageSizing::Fit::Page, 1,
                  largestSmallPage + QSize(2 * sheetMargin, 2 * sheetMargin), devicePixelRatioF()});
}

void PageStrip::arrived(const ViewedPage& page) {
  m_pictures.insert(page.page, new QImage(page.image),
                    std::max<qsizetype>(page.image.sizeInBytes(), 1));
  update(m_pages->index(page.page - 1));
}

} // namespace folivex
