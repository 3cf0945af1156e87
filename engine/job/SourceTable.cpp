#include "engine/job/SourceTable.h"

#include "engine/job/OcrCopy.h"
#include "engine/job/OcrFirst.h"
#include "platform/Paths.h"

#include <utility>

namespace folivex {

using platform::FileStamp;

std::shared_ptr<WordTable> SourceTable::follow(const SplitSetup& setup) {
  std::erase_if(m_givenUp, [](const auto& filler) { return filler->isFinished(); });
  if (auto table = this->table();
      table && table->state() != WordTable::State::Failed && isOf(setup) && !isChanged()) {
    return table;
  }
  drop();
  m_origin = {
      setup.fileName, isRecognised(setup), FileStamp::beforeReading(setup.fileName), {}, {}};
  m_origin.read = {setup.fileName, setup.pdfPassword, setup.horizWordSpacing};
  m_finding.clear();
  if (m_origin.recognised) {
    OcrFinding found = findOcrCopy(setup.fileName, platform::temporaryFolder());
    if (!found.copy && found.whyNot.isEmpty()) {
      return nullptr;
    }
    if (found.copy) {
      m_origin.read.file = found.copy->path();
    }
    m_copy = std::move(found.copy);
    m_finding = found.whyNot;
  }
  m_origin.readStamp = FileStamp::beforeReading(m_origin.read.file);
  const std::lock_guard lock(m_mutex);
  m_table = std::make_shared<WordTable>(m_mostBytes);
  m_filler = std::make_unique<TableFiller>(m_library, m_origin.read, m_table, m_isPaused);
  return m_table;
}

bool SourceTable::isOf(const SplitSetup& setup) const {
  return m_origin.source == setup.fileName && m_origin.recognised == isRecognised(setup) &&
         m_origin.read.password == setup.pdfPassword &&
         m_origin.read.wordSpacing == setup.horizWordSpacing;
}

bool SourceTable::isChanged() const {
  return FileStamp::of(m_origin.source) != m_origin.stamp ||
         FileStamp::of(m_origin.read.file) != m_origin.readStamp;
}

void SourceTable::letCopyGo() {
  const bool isOnlyHere =
      m_copy && m_copy->path() != ocrCopyPath(m_origin.source, platform::temporaryFolder());
  const auto table = this->table();
  if (table && table->state() == WordTable::State::Complete && !isOnlyHere) {
    m_copy.reset();
  }
}

void SourceTable::drop() {
  m_copy.reset();
  const std::lock_guard lock(m_mutex);
  m_table.reset();
  if (m_filler) {
    m_filler->giveUp();
    m_givenUp.push_back(std::move(m_filler));
  }
}

std::shared_ptr<WordTable> SourceTable::table() const {
  const std::lock_guard lock(m_mutex);
  return m_table;
}

void SourceTable::setPaused(bool on) {
  const std::lock_guard lock(m_mutex);
  m_isPaused = on;
  if (m_filler) {
    m_filler->setPaused(on);
  }
}

} // namespace folivex
