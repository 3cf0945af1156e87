#include "StreamPipes.h"

#include "pages/StringPipe.h"

#include <libdeflate.h>

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>

namespace cleftor {

namespace {

/// Decoded content beyond this is a file made to exhaust memory.
constexpr size_t mostContent = size_t{256} * 1024 * 1024;

/// The parser takes any fault below it for a fault of the source, so faults wait here.
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

/// False when something was wrong on the way.
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

bool isDeflatedOnly(QPDFObjectHandle stream) {
  QPDFObjectHandle dictionary = stream.getDict();
  QPDFObjectHandle filter = dictionary.getKey("/Filter");
  if (filter.isArray() && filter.getArrayNItems() == 1) {
    filter = filter.getArrayItem(0);
  }
  return filter.isNameAndEquals("/FlateDecode") && dictionary.getKey("/DecodeParms").isNull() &&
         dictionary.getKey("/F").isNull();
}

/// Twice as fast as the step by step inflater, but all or nothing: false leaves content as it was.
bool inflateSound(const std::string& data, std::string& content) {
  const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> inflater(
      libdeflate_alloc_decompressor(), &libdeflate_free_decompressor);
  const size_t before = content.size();
  // Most content grows four to eight times; what grows more is left to the step by step inflater.
  content.resize(before + std::min(std::max<size_t>(4096, data.size() * 10), mostContent));
  size_t taken = 0;
  size_t made = 0;
  const bool whole =
      inflater && libdeflate_zlib_decompress_ex(inflater.get(), data.data(), data.size(),
                                                content.data() + before, content.size() - before,
                                                &taken, &made) == LIBDEFLATE_SUCCESS;
  content.resize(whole ? before + made : before);
  return whole;
}

} // namespace

std::string storedData(QPDFObjectHandle stream) {
  std::string data;
  pages::StringPipe target(data, std::numeric_limits<size_t>::max());
  pipe(stream, target, qpdf_dl_none);
  return data;
}

void writeStoredData(QPDFObjectHandle stream, DocumentWriter& writer) {
  WriterPipe target(writer);
  pipe(stream, target, qpdf_dl_none);
  target.throwFault();
}

bool decodeContent(QPDFObjectHandle stream, std::string& content) {
  if (isDeflatedOnly(stream) && inflateSound(storedData(stream), content)) {
    return true;
  }
  pages::StringPipe target(content, mostContent);
  return pipe(stream, target, qpdf_dl_generalized);
}

} // namespace cleftor
