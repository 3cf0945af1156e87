// ClaimedPlaces: free places that no other run gets.
#pragma once

#include "engine/naming/OutputReservation.h"

namespace folivex {

class CSplitPdfInit;
class FolderLocks;

/// The disk, where a place is taken through the split library, which keeps it until the output is
/// written or the source is closed. Makes and locks the folders that outputs go to.
class ClaimedPlaces : public DiskOutputPlaces {
public:
  ClaimedPlaces(const QStringList& protectedFiles, CSplitPdfInit& split, FolderLocks& locks)
      : DiskOutputPlaces(protectedFiles), m_split(split), m_locks(locks) {}

  bool claim(const QString& path) override;

private:
  CSplitPdfInit& m_split;
  FolderLocks& m_locks;
};

} // namespace folivex
