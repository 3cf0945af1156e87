#include "Splitter.h"

#include "cleftor/cleftor.h"
#include "common/Paths.h"
#include "common/Utf16.h"

#include <cerrno>
#include <filesystem>
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
  m_claims.clear();
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
  prepare(*m_source, order);
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
  prepare(source, order);
  writeRange(source, order);
  m_lastWrittenPage = order.lastPage();
}

void Splitter::prepare(const Source& source, RangeOrder& order) {
  if (auto claim = m_claims.extract(order.target); !claim.empty()) {
    order.claim = std::move(claim.mapped().part);
    if (order.claim == nullptr) {
      common::refuseToWrite(order.target, std::generic_category().message(claim.mapped().error));
    }
  }
  order.settings = m_settings;
  checkOrder(source, order);
}

bool Splitter::reserve(const std::string& target) {
  const std::filesystem::path place = common::pathOf(target);
  if (!place.has_filename()) {
    common::refuseToWrite(target, "it names no file");
  }
  const auto isFree = [&place] {
    std::error_code ignored;
    return !std::filesystem::exists(std::filesystem::symlink_status(place, ignored));
  };
  if (m_claims.count(target) != 0 || !isFree()) {
    return false;
  }
  Claim claim;
  claim.part = common::PartFile::make(place, common::files::Readers::Usual, claim.error);
  // Whoever had the part may have put a file there since.
  if (claim.error == EBUSY || (claim.part != nullptr && !isFree())) {
    return false;
  }
  const int error = claim.error;
  m_claims.emplace(target, std::move(claim));
  if (error != 0) {
    common::refuseToWrite(target, std::generic_category().message(error));
  }
  return true;
}

void Splitter::setWriteBehind(bool on) {
  if (on && !m_writer) {
    m_writer = std::make_unique<RangeWriter>();
  } else if (!on && m_writer) {
    m_opening.reset();
    m_writer->drain();
    m_lastWrittenPage = lastWrittenPage();
    for (auto range = m_writer->takeFinished(); range; range = m_writer->takeFinished()) {
      m_leftOver.push_back(std::move(*range));
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

const FinishedRange* Splitter::takeFinished() {
  if (!m_leftOver.empty()) {
    m_finished = std::move(m_leftOver.front());
    m_leftOver.pop_front();
  } else {
    m_finished = m_writer ? m_writer->takeFinished() : std::nullopt;
  }
  m_finishedTarget = m_finished ? toUtf16(m_finished->target) : std::u16string();
  m_finishedReason = m_finished ? toUtf16(m_finished->reason) : std::u16string();
  return m_finished ? &*m_finished : nullptr;
}

int32_t Splitter::lastWrittenPage() const {
  const int32_t behind = m_writer ? m_writer->lastWrittenPage() : 0;
  return behind != 0 ? behind : m_lastWrittenPage;
}

} // namespace cleftor
