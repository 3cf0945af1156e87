#include "engine/output/UniqueOutputs.h"

namespace folivex {

void UniqueOutputs::output(const ReservedOutput& reserved) {
  if (reserved.path.isEmpty()) {
    return; // replaced by a later one: replaced() told its pages
  }
  const bool grows = m_held && m_held->path == reserved.path &&
                     m_held->firstPage == reserved.firstPage &&
                     m_held->lastPage <= reserved.lastPage;
  if (!grows) {
    release();
  }
  m_held = reserved;
}

void UniqueOutputs::replaced(const ReservedOutput& lost) {
  m_next.replaced(lost);
}

void UniqueOutputs::release() {
  if (m_held) {
    m_next.output(*m_held);
    m_held.reset();
  }
}

} // namespace folivex
