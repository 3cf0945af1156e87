#include "engine/output/ClaimedPlaces.h"

#include "engine/base/Utf16.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/output/FolderLocks.h"

namespace folivex {

bool ClaimedPlaces::claim(const QString& path) {
  m_locks.takeFor(path); // who has it in vain is told when the output is written
  return m_split.ReserveTarget(utf16(path)) != CSplitPdfInit::taken;
}

} // namespace folivex
