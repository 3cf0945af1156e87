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
      : Pipeline("string", nullptr), target_(target), most_(most) {}

  void write(const unsigned char* data, size_t length) override {
    if (length > most_ - target_.size()) {
      throw std::length_error("more data than any content needs");
    }
    target_.append(reinterpret_cast<const char*>(data), length);
  }
  void finish() override {}

private:
  std::string& target_;
  size_t most_;
};

/** The parser takes any fault below it for a fault of the source, so faults wait here. */
class WriterPipe : public Pipeline {
public:
  explicit WriterPipe(DocumentWriter& writer) : Pipeline("output", nullptr), writer_(writer) {}

  void write(const unsigned char* data, size_t length) override {
    if (fault_) {
      return;
    }
    try {
      writer_.streamData({reinterpret_cast<const char*>(data), length});
    } catch (...) {
      fault_ = std::current_exception();
    }
  }
  void finish() override {}

  void throwFault() const {
    if (fault_) {
      std::rethrow_exception(fault_);
    }
  }

private:
  DocumentWriter& writer_;
  std::exception_ptr fault_;
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
