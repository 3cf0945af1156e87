// WindowUpdateMemory: the settings of the update check, kept where the windows keep theirs.
#pragma once

#include "updates/UpdateSettings.h"
#include "widgets/WindowMemory.h"

namespace folivex {

class WindowUpdateMemory : public UpdateMemory {
public:
  /// `memory` must outlive this.
  explicit WindowUpdateMemory(WindowMemory& memory) : m_memory(memory) {}

  QString text(const QString& key) const override { return m_memory.text(key); }
  void setText(const QString& key, const QString& value) override { m_memory.setText(key, value); }

private:
  WindowMemory& m_memory;
};

} // namespace folivex
