#include "Passwords.h"

#include "Unicode.h"

#include <algorithm>
#include <cstddef>

extern "C" {
#include <mupdf/pdf.h>
}

namespace glyphrun {

namespace {

/** The text whose PDFDocEncoding is `bytes`; empty when a byte has no character there. */
std::string textOfBytes(std::string_view bytes) {
  std::u16string text;
  for (const char byte : bytes) {
    const unsigned short c = fz_unicode_from_pdf_doc_encoding[static_cast<unsigned char>(byte)];
    if (c == 0)
      return {};
    text.push_back(c);
  }
  return toUtf8(text);
}

/** `text` in an encoding given by its table from bytes to characters; empty when one is missing. */
std::string bytesIn(const unsigned short* table, std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) {
    const unsigned short* found = std::find(table, table + 256, unit);
    if (found == table + 256)
      return {};
    bytes.push_back(static_cast<char>(found - table));
  }
  return bytes;
}

void add(std::vector<std::string>& list, const std::string& candidate) {
  if (!candidate.empty() && std::find(list.begin(), list.end(), candidate) == list.end())
    list.push_back(candidate);
}

void addForms(std::vector<std::string>& list, std::u16string_view typed, bool byteEncoded) {
  const std::string plain = toUtf8(typed);
  add(list, plain);
  if (!byteEncoded) {
    add(list, toUtf8(passwordForm(typed)));
    return;
  }
  add(list, textOfBytes(bytesIn(fz_unicode_from_windows_1252, typed)));
  add(list, textOfBytes(bytesIn(fz_unicode_from_iso8859_1, typed)));
  add(list, textOfBytes(plain));
}

} // namespace

std::vector<std::string> passwordCandidates(std::u16string_view typed, bool byteEncoded) {
  std::vector<std::string> list;
  addForms(list, typed, byteEncoded);
  if (!typed.empty() && typed.back() == u' ')
    addForms(list, typed.substr(0, typed.size() - 1), byteEncoded);
  return list;
}

} // namespace glyphrun
