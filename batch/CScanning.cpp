#include "batch/CScanning.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int widthInCharacters = 70;

} // namespace

/// One line however long the path is; the end that names the file stays.
class CScanning::PlaceLine : public QWidget {
public:
  explicit PlaceLine(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("place"));
    setAccessibleName(QStringLiteral("Folder being scanned"));
    setToolTip(QStringLiteral("Where the scan is"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  }

  void setText(const QString& text) {
    m_text = text;
    setAccessibleDescription(text);
    update();
  }

  QSize sizeHint() const override {
    return {fontMetrics().averageCharWidth() * widthInCharacters, fontMetrics().height()};
  }
  QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(m_text, Qt::ElideMiddle, width()));
  }

private:
  QString m_text;
};

CScanning::CScanning(QWidget* parent) : QDialog(parent), m_place(new PlaceLine(this)) {
  setObjectName(QStringLiteral("CScanning"));
  setWindowTitle(QStringLiteral("Scanning"));
  setWindowModality(Qt::ApplicationModal);

  auto* text = new QLabel(QStringLiteral("Scanning disk, please wait."), this);
  text->setObjectName(QStringLiteral("text"));
  auto* stop = new QPushButton(QStringLiteral("&Stop"), this);
  stop->setObjectName(QStringLiteral("stop"));
  stop->setToolTip(QStringLiteral("End the scan; the files found so far stay in the list"));
  connect(stop, &QPushButton::clicked, this, [this] { reject(); });

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(stop);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(m_place);
  layout->addSpacing(fontMetrics().height() / 2);
  layout->addLayout(buttons);
}

void CScanning::showPlace(const QString& path) {
  m_place->setText(path);
}

void CScanning::handlePendingEvents() {
  QCoreApplication::processEvents();
}

void CScanning::reject() {
  m_stopRequested = true;
}

} // namespace folivex
