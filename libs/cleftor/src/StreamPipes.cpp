#include "StreamPipes.h"

#include <qpdf/Pipeline.hh>

#include <exception>
#include <limits>
#include <stdexcept>

namespace cleftor {

namespace {

/** Decoded content beyond this is a file made to exhaust memory. */
constexpr size_t mostContent = size_t{256} * 1024 * 1024;

class StringPipe : public Pipeline {
public:
  StringPipe(std::string& target, size_t most)
      : Pipeline("string", nullptr), m_target(target), m_most(most) {}

  void write(const unsigned char* data, size_t length) override {
    if (length > m_most - m_target.size()) {
      throw std::length_error("more data than any content needs");
    }
    m_target.append(reinterpret_cast<const char*>(data), length);
  }
  void finish() override {}

private:
  std::string& m_target;
  size_t m_most;
};

/** The parser takes any fault below it for a fault of the source, so faults wait here. */
class WriterPipe : public Pipeline {
public:
  explicit WriterPipe(DocumentWriter& writer) : Pipeline("output", nullptr), m_writer(writer) {}

  void write(const unsigned char* data, size_t length) override {
    if (m_fault) {
      return;
    }
    try {
      m_writer.streamData({reinterpret_cast<const char*>(data), length});
    } catch (...) {
      m_fault = std::current_exception();
    }
  }
  void finish() override {}

  void throwFault() const {
    if (m_fault) {
      std::rethrow_exception(m_fault);
    }
  }

private:
  DocumentWriter& m_writer;
  std::exception_ptr m_fault;
};

/** False when something was wrong on the way. */
bool pipe(QPDFObjectHandle stream, Pipeline& target, qpdf_stream_decode_level_e level) {
  try {
    bool filtered = false;
    const bool whole = stream.pipeStreamData(&target, &filtered, 0, level, true, true);
    return whole && (filtered || level == qpdf_dl_none);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return false;
  }
}

} // namespace

std::string storedData(QPDFObjectHandle stream) {
  std::string data;
  StringPipe target(data, std::numeric_limits<size_t>::max());
  pipe(stream, target, qpdf_dl_none);
  return data;
}

void writeStoredData(QPDFObjectHandle stream, DocumentWriter& writer) {
  WriterPipe target(writer);
  pipe(stream, target, qpdf_dl_none);
  target.throwFault();
}

bool decodeContent(QPDFObjectHandle stream, std::string& content) {
  StringPipe target(content, mostContent);
  return pipe(stream, target, qpdf_dl_generalized);
}

} // namespace cleftor
