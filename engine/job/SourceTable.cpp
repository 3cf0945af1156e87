#include "engine/job/SourceTable.h"

#include <utility>

namespace folivex {

namespace {

/// Words of some hundred thousand dense pages; who has more plans when it is asked for.
constexpr std::size_t mostBytes = std::size_t{512} << 20U;

} // namespace

std::shared_ptr<WordTable> SourceTable::follow(const SplitSetup& setup) {
  std::erase_if(m_givenUp, [](const auto& filler) { return filler->isFinished(); });
  const TableFiller::Source read{setup.fileName, setup.pdfPassword, setup.horizWordSpacing};
  if (auto table = this->table(); table && read == m_origin.read && !isChanged() &&
                                  table->state() != WordTable::State::Failed) {
    return table;
  }
  drop();
  m_origin = {read, platform::FileStamp::beforeReading(read.file)};
  const std::lock_guard lock(m_mutex);
  m_table = std::make_shared<WordTable>(mostBytes);
  m_filler = std::make_unique<TableFiller>(m_library, read, m_table);
  m_filler->setPaused(m_isPaused);
  return m_table;
}

bool SourceTable::isChanged() const {
  return platform::FileStamp::of(m_origin.read.file) != m_origin.stamp;
}

void SourceTable::drop() {
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
