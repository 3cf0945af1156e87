// CScanning: what is to be seen while a disk is scanned.
#pragma once

#include "batch/FolderScan.h"

#include <QDialog>

namespace folivex {

class ElidedLabel;

/// Keeps every other window of the program from being used while it is open, so that the list stays
/// as the scan knows it. Its Stop button, Escape and its close box all stop the scan; who opened it
/// closes it.
class CScanning : public QDialog, public FolderScanWatcher {
public:
  explicit CScanning(QWidget* parent);

  void showPlace(const QString& path) override;
  void handlePendingEvents() override;
  bool stopRequested() const override { return m_stopRequested; }

  void reject() override;

private:
  ElidedLabel* m_place;
  bool m_stopRequested = false;
};

} // namespace folivex
