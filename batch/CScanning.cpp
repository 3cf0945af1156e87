#include "batch/CScanning.h"

#include "widgets/ElidedLabel.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace folivex {

namespace {

constexpr int widthInCharacters = 70;

} // namespace

CScanning::CScanning(QWidget* parent) : QDialog(parent), m_place(new ElidedLabel(this)) {
  setObjectName(QStringLiteral("CScanning"));
  setWindowTitle(QStringLiteral("Scanning"));
  setWindowModality(Qt::ApplicationModal);

  m_place->setObjectName(QStringLiteral("place"));
  m_place->setAccessibleName(QStringLiteral("Folder being scanned"));
  m_place->setToolTip(QStringLiteral("Where the scan is"));
  m_place->setMinimumWidth(fontMetrics().averageCharWidth() * widthInCharacters);
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
  m_place->setAccessibleDescription(path);
}

void CScanning::handlePendingEvents() {
  QCoreApplication::processEvents();
}

void CScanning::reject() {
  m_stopRequested = true;
}

} // namespace folivex
