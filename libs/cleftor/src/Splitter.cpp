#include "Splitter.h"

#include "cleftor/cleftor.h"
#include "common/Utf16.h"

#include <system_error>
#include <utility>

namespace cleftor {

using common::Failure;
using common::toUtf16;

Splitter& Splitter::instance() {
  // Never destroyed: at the end of a process those who use it may go later than it would.
  static Splitter& splitter = *new Splitter;
  return splitter;
}

void Splitter::beginOpening(const std::string& path, const Passwords& passwords) {
  close();
  const auto open = [this, path, passwords] {
    return std::make_shared<Source>(path, passwords, &m_stopOpening);
  };
  try {
    m_opening = {path, passwords, std::async(std::launch::async, open)};
  } catch (const std::system_error&) {
    // Without a thread the source is opened when it is asked for.
  }
}

void Splitter::open(const std::string& path, const Passwords& passwords) {
  std::optional<Opening> opening;
  if (m_opening && m_opening->path == path && m_opening->passwords == passwords) {
    opening.swap(m_opening);
  }
  close();
  m_source = opening ? opening->source.get() : std::make_shared<Source>(path, passwords);
}

void Splitter::close() {
  if (m_opening) {
    m_stopOpening = true;
    m_opening.reset(); // waits for it
    m_stopOpening = false;
  }
  drain();
  if (!m_source) {
    return;
  }
  m_source->letGoOfFile();
  if (m_writer) {
    m_writer->release(std::move(m_source));
  }
  m_source.reset();
}

void Splitter::split(RangeOrder order, int32_t totalPages) {
  if (!m_source) {
    throw Failure(CLEFTOR_NOT_OPEN, "No file is open to be split");
  }
  if (totalPages != m_source->pageCount()) {
    throw Failure(CLEFTOR_BAD_RANGE, "\"" + m_source->path() + "\" has " +
                                         std::to_string(m_source->pageCount()) + " pages and not " +
                                         std::to_string(totalPages));
  }
  order.settings = m_settings;
  checkOrder(*m_source, order);
  if (m_writer) {
    m_writer->hand(m_source, std::move(order));
    return;
  }
  writeRange(*m_source, order);
  m_lastWrittenPage = order.lastPage();
}

void Splitter::splitAlone(const std::string& path, const Passwords& passwords, RangeOrder order) {
  // A range on its way to the same target must not come later than this one.
  drain();
  Source source(path, passwords);
  order.settings = m_settings;
  checkOrder(source, order);
  writeRange(source, order);
  m_lastWrittenPage = order.lastPage();
}

void Splitter::setWriteBehind(bool on) {
  if (on && !m_writer) {
    m_writer = std::make_unique<RangeWriter>();
  } else if (!on && m_writer) {
    m_opening.reset();
    m_writer->drain();
    m_lastWrittenPage = lastWrittenPage();
    for (auto failure = m_writer->takeFailure(); failure; failure = m_writer->takeFailure()) {
      m_leftFailures.push_back(std::move(*failure));
    }
    m_writer.reset();
  }
}

bool Splitter::waitForOpening(std::chrono::milliseconds longest) const {
  return !m_opening || m_opening->source.wait_for(longest) == std::future_status::ready;
}

bool Splitter::waitForRoom(int32_t pages, std::chrono::milliseconds longest) {
  return !m_writer || !m_source || m_writer->waitForRoom(m_source, pages, longest);
}

int32_t Splitter::drain(std::optional<std::chrono::milliseconds> longest) {
  return m_writer ? m_writer->drain(longest) : 0;
}

const FailedRange* Splitter::takeFailure() {
  if (!m_leftFailures.empty()) {
    m_failure = std::move(m_leftFailures.front());
    m_leftFailures.pop_front();
  } else {
    m_failure = m_writer ? m_writer->takeFailure() : std::nullopt;
  }
  m_failedTarget = m_failure ? toUtf16(m_failure->order.target) : std::u16string();
  m_failedReason = m_failure ? toUtf16(m_failure->reason) : std::u16string();
  return m_failure ? &*m_failure : nullptr;
}

int32_t Splitter::lastWrittenPage() const {
  const int32_t behind = m_writer ? m_writer->lastWrittenPage() : 0;
  return behind != 0 ? behind : m_lastWrittenPage;
}

} // namespace cleftor
