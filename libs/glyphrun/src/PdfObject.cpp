#include "PdfObject.h"

#include <algorithm>
#include <cstring>

#include <libdeflate.h>
#include <zlib.h>

namespace glyphrun {

PdfObject PdfObject::get(const char* key) const {
  pdf_obj* found = nullptr;
  if (m_object != nullptr) {
    m_mu->attempt([&] { found = pdf_dict_gets(m_mu->raw(), m_object, key); });
  }
  return found == nullptr ? PdfObject() : PdfObject(*m_mu, found);
}

PdfObject PdfObject::at(int index) const {
  pdf_obj* found = nullptr;
  if (m_object != nullptr) {
    m_mu->attempt([&] { found = pdf_array_get(m_mu->raw(), m_object, index); });
  }
  return found == nullptr ? PdfObject() : PdfObject(*m_mu, found);
}

int PdfObject::size() const {
  int length = 0;
  if (m_object != nullptr) {
    m_mu->attempt([&] { length = pdf_array_len(m_mu->raw(), m_object); });
  }
  return length;
}

bool PdfObject::is(int (*test)(fz_context*, pdf_obj*)) const {
  int result = 0;
  if (m_object != nullptr) {
    m_mu->attempt([&] { result = test(m_mu->raw(), m_object); });
  }
  return result != 0;
}

bool PdfObject::isTrue() const {
  int value = 0;
  if (m_object != nullptr) {
    m_mu->attempt([&] { value = pdf_to_bool(m_mu->raw(), m_object); });
  }
  return value != 0;
}

int PdfObject::objectNumber() const {
  return isIndirect() ? pdf_to_num(m_mu->raw(), m_object) : 0;
}

double PdfObject::number(double otherwise) const {
  double value = otherwise;
  if (m_object != nullptr) {
    m_mu->attempt([&] {
      if (pdf_is_number(m_mu->raw(), m_object)) {
        value = static_cast<double>(pdf_to_real(m_mu->raw(), m_object));
      }
    });
  }
  return value;
}

int PdfObject::integer(int otherwise) const {
  int value = otherwise;
  if (m_object != nullptr) {
    m_mu->attempt([&] {
      if (pdf_is_number(m_mu->raw(), m_object)) {
        value = pdf_to_int(m_mu->raw(), m_object);
      }
    });
  }
  return value;
}

const char* PdfObject::name() const {
  const char* text = "";
  if (m_object != nullptr) {
    m_mu->attempt([&] { text = pdf_to_name(m_mu->raw(), m_object); });
  }
  return text;
}

std::string_view PdfObject::bytes() const {
  const char* data = "";
  std::size_t length = 0;
  if (m_object != nullptr) {
    m_mu->attempt([&] {
      if (pdf_is_string(m_mu->raw(), m_object)) {
        data = pdf_to_string(m_mu->raw(), m_object, &length);
      }
    });
  }
  return {data, length};
}

struct StreamReader::Inflater {
  Inflater() : whole(libdeflate_alloc_decompressor()) { ready = inflateInit(&z) == Z_OK; }
  ~Inflater() {
    libdeflate_free_decompressor(whole);
    if (ready) {
      inflateEnd(&z);
    }
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  libdeflate_decompressor* whole; ///< for sound data, or null
  z_stream z{};                   ///< for the rest: keeps what came before the damage
  bool ready = false;
  std::size_t growth = 6; ///< how many times longer than its stream the last content was
};

StreamReader::StreamReader(MuContext& mu) : m_mu(mu), m_inflater(std::make_unique<Inflater>()) {}

StreamReader::~StreamReader() = default;

bool StreamReader::append(const PdfObject& stream, std::size_t limit, StreamData& out) {
  if (!stream.isStream()) {
    return false;
  }
  PdfObject filter = stream.get("Filter");
  const bool single = filter.isName() || filter.size() == 1;
  if (filter.isArray()) {
    filter = filter.at(0);
  }
  const bool flate = filter.isNamed("FlateDecode") || filter.isNamed("Fl");
  if (m_inflater->ready && single && flate && !stream.get("DecodeParms") && !stream.get("F")) {
    return appendInflated(stream, limit, out);
  }

  fz_stream* opened = nullptr;
  if (m_mu.attempt([&] { opened = pdf_open_stream(m_mu.raw(), stream.raw()); }) != Outcome::Ok) {
    return false;
  }
  return readAll(opened, limit, out);
}

bool StreamReader::readAll(fz_stream* stream, std::size_t limit, StreamData& out) {
  constexpr std::size_t step = 16384;
  const std::size_t before = out.bytes.size();
  std::size_t filled = before;
  const Outcome outcome = m_mu.attempt([&] {
    while (filled - before < limit) {
      if (out.bytes.size() < filled + step) {
        out.bytes.resize(std::max(filled + step, out.bytes.size() * 2));
      }
      const std::size_t room = std::min(out.bytes.size() - filled, limit - (filled - before));
      const std::size_t got = fz_read(
          m_mu.raw(), stream, reinterpret_cast<unsigned char*>(out.bytes.data()) + filled, room);
      if (got == 0) {
        break;
      }
      filled += got;
    }
    out.cut = out.cut || filled - before >= limit;
  });
  out.damaged = out.damaged || outcome != Outcome::Ok || stream->error != 0;
  fz_drop_stream(m_mu.raw(), stream);
  out.bytes.resize(filled);
  return true;
}

// MuPDF's own inflater passes over damage in silence and copies every byte twice. Page contents are
// nearly always a single Flate filter without predictor, so these are inflated here.
bool StreamReader::appendInflated(const PdfObject& stream, std::size_t limit, StreamData& out) {
  fz_stream* opened = nullptr;
  if (m_mu.attempt([&] { opened = pdf_open_raw_stream(m_mu.raw(), stream.raw()); }) !=
      Outcome::Ok) {
    return false;
  }
  m_raw.bytes.clear();
  m_raw.damaged = false;
  if (!readAll(opened, limit, m_raw)) {
    return false;
  }
  out.damaged = out.damaged || m_raw.damaged;
  if (!inflateSound(limit, out)) {
    inflateWhatThereIs(limit, out);
  }
  return true;
}

// Twice as fast as the step by step inflater, but all or nothing.
bool StreamReader::inflateSound(std::size_t limit, StreamData& out) {
  if (m_inflater->whole == nullptr) {
    return false;
  }
  const std::size_t before = out.bytes.size();
  const std::size_t length = m_raw.bytes.size();
  std::size_t room = std::max<std::size_t>(4096, length * (m_inflater->growth + 1));
  for (int attempt = 0; attempt < 2; ++attempt, room *= 4) {
    out.bytes.resize(before + std::min(room, limit));
    std::size_t taken = 0;
    std::size_t made = 0;
    const libdeflate_result result = libdeflate_zlib_decompress_ex(
        m_inflater->whole, m_raw.bytes.data(), length, out.bytes.data() + before,
        out.bytes.size() - before, &taken, &made);
    if (result == LIBDEFLATE_SUCCESS && made < limit) {
      m_inflater->growth = std::clamp<std::size_t>(made / std::max<std::size_t>(length, 1), 1, 16);
      out.bytes.resize(before + made);
      return true;
    }
    if (result != LIBDEFLATE_INSUFFICIENT_SPACE || room >= limit) {
      break;
    }
  }
  out.bytes.resize(before);
  return false;
}

void StreamReader::inflateWhatThereIs(std::size_t limit, StreamData& out) {
  z_stream& z = m_inflater->z;
  inflateReset(&z);
  z.next_in = reinterpret_cast<Bytef*>(m_raw.bytes.data());
  z.avail_in = static_cast<uInt>(std::min<std::size_t>(m_raw.bytes.size(), UINT_MAX));
  const std::size_t before = out.bytes.size();
  std::size_t filled = before;
  int status = Z_OK;
  while (status == Z_OK && filled - before < limit) {
    const std::size_t wanted = std::max<std::size_t>(4096, m_raw.bytes.size() * 4);
    if (out.bytes.size() - filled < 64) {
      out.bytes.resize(filled + std::max(wanted, filled - before));
    }
    const std::size_t room = std::min(out.bytes.size() - filled, limit - (filled - before));
    z.next_out = reinterpret_cast<Bytef*>(out.bytes.data()) + filled;
    z.avail_out = static_cast<uInt>(std::min<std::size_t>(room, UINT_MAX));
    const uInt offered = z.avail_out;
    status = inflate(&z, Z_NO_FLUSH);
    filled += offered - z.avail_out;
  }
  out.bytes.resize(filled);
  if (filled - before >= limit) {
    out.cut = true;
    return;
  }
  // Some producers end a stream where the compressor was flushed, or write nothing for nothing.
  const bool flushed = m_raw.view().ends_with(std::string_view("\0\0\xFF\xFF", 4));
  if (m_raw.bytes.empty() || (status == Z_BUF_ERROR && z.avail_in == 0 && flushed)) {
    return;
  }
  // All data with a wrong or missing checksum behind it is no loss.
  if (status == Z_BUF_ERROR && z.avail_in == 0) {
    Bytef checksum[4] = {0, 0, 0, 0};
    Bytef spare = 0;
    z.next_in = checksum;
    z.avail_in = sizeof checksum;
    z.next_out = &spare;
    z.avail_out = 1;
    status = inflate(&z, Z_NO_FLUSH);
    if (z.avail_out == 0) {
      status = Z_BUF_ERROR;
    }
  }
  const bool checksumOnly =
      status == Z_DATA_ERROR && z.msg != nullptr && std::strcmp(z.msg, "incorrect data check") == 0;
  out.damaged = out.damaged || (status != Z_STREAM_END && !checksumOnly);
}

} // namespace glyphrun
