#include "batch/CScanning.h"

#include "widgets/Controls.h"
#include "widgets/ElidedLabel.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QPushButton>

namespace folivex {

namespace {

constexpr int widthInCharacters = 70;

} // namespace

CScanning::CScanning(QWidget* parent)
    : QDialog(parent), m_place(named(new ElidedLabel(this), "place", "Where the scan is")) {
  setObjectName(QStringLiteral("CScanning"));
  setWindowTitle(QStringLiteral("Scanning"));
  setWindowModality(Qt::ApplicationModal);
  m_place->setAccessibleName(QStringLiteral("Folder being scanned"));
  m_place->setMinimumWidth(fontMetrics().averageCharWidth() * widthInCharacters);
  auto* text = named(new QLabel(QStringLiteral("Scanning disk, please wait."), this), "text");
  auto* stop = named(new QPushButton(QStringLiteral("&Stop"), this), "stop",
                     "End the scan; the files found so far stay in the list");
  connect(stop, &QPushButton::clicked, this, &QDialog::reject);
  stack(this, {text, m_place, sideBySide(this, {gap(), stop})});
  static_cast<QBoxLayout*>(layout())->insertSpacing(2, fontMetrics().height() / 2);
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
