// A PDF object as C++ sees it: every access is safe to make anywhere, and what is missing or of the
// wrong type reads as nothing.
#pragma once

#include "MuContext.h"

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace glyphrun {

/// Refers to an object that its document keeps; it owns nothing.
class PdfObject {
public:
  PdfObject() = default;
  PdfObject(MuContext& mu, pdf_obj* object) : m_mu(&mu), m_object(object) {}

  explicit operator bool() const { return m_object != nullptr && !is(pdf_is_null); }
  pdf_obj* raw() const { return m_object; }

  PdfObject get(const char* key) const;
  PdfObject at(int index) const;
  /// Length of an array, 0 for anything else.
  int size() const;

  bool isDict() const { return is(pdf_is_dict); }
  bool isArray() const { return is(pdf_is_array); }
  bool isName() const { return is(pdf_is_name); }
  bool isString() const { return is(pdf_is_string); }
  bool isNumber() const { return is(pdf_is_number); }
  bool isInteger() const { return is(pdf_is_int); }
  bool isStream() const { return is(pdf_is_stream); }
  bool isTrue() const;
  bool isIndirect() const { return m_object != nullptr && pdf_is_indirect(m_mu->raw(), m_object); }

  /// Object number of a reference, 0 for a direct object.
  int objectNumber() const;

  double number(double otherwise = 0) const;
  int integer(int otherwise = 0) const;
  /// Empty for anything but a name.
  const char* name() const;
  /// Bytes of a string, decrypted.
  std::string_view bytes() const;

  bool isNamed(std::string_view text) const { return text == name(); }

private:
  bool is(int (*test)(fz_context*, pdf_obj*)) const;

  MuContext* m_mu = nullptr;
  pdf_obj* m_object = nullptr;
};

/// Leaves new elements without a value: they are about to be read over.
template <typename T> struct UnsetAllocator : std::allocator<T> {
  template <typename U> struct rebind { using other = UnsetAllocator<U>; };
  template <typename U> void construct(U* place) noexcept { ::new (place) U; }
  template <typename U, typename... From> void construct(U* place, From&&... from) {
    ::new (place) U(std::forward<From>(from)...);
  }
};

/// Bytes of a stream after its filters.
struct StreamData {
  std::vector<char, UnsetAllocator<char>> bytes;
  bool damaged = false; ///< ended early; `bytes` is what came before
  bool cut = false;     ///< longer than the limit

  std::string_view view() const { return {bytes.data(), bytes.size()}; }
};

/// Reads streams; keeps its inflater and buffers from one to the next. One thread, one context.
class StreamReader {
public:
  explicit StreamReader(MuContext& mu);
  ~StreamReader();
  StreamReader(const StreamReader&) = delete;
  StreamReader& operator=(const StreamReader&) = delete;

  /// Appends the decoded stream to `out`, at most `limit` bytes. False when nothing can be read.
  bool append(const PdfObject& stream, std::size_t limit, StreamData& out);

private:
  struct Inflater;

  bool readAll(fz_stream* stream, std::size_t limit, StreamData& out);
  bool appendInflated(const PdfObject& stream, std::size_t limit, StreamData& out);
  bool inflateSound(std::size_t limit, StreamData& out);
  void inflateWhatThereIs(std::size_t limit, StreamData& out);

  MuContext& m_mu;
  std::unique_ptr<Inflater> m_inflater;
  StreamData m_raw;
};

} // namespace glyphrun
