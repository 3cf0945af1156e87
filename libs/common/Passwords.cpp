#include "common/Passwords.h"

#include "common/Utf16.h"

#include <unicode/ucnv.h>
#include <unicode/unorm2.h>

#include <algorithm>
#include <memory>

namespace common {

namespace {

using namespace std::string_view_literals;

/// The PDF document encoding where it is not ISO 8859-1 (ISO 32000-1, annex D.2); 0: no character.
constexpr size_t accentsStart = 0x18;
constexpr auto accents = u"\u02D8\u02C7\u02C6\u02D9\u02DD\u02DB\u02DA\u02DC"sv;
constexpr size_t marksStart = 0x7F;
constexpr auto marks = u"\0\u2022\u2020\u2021\u2026\u2014\u2013\u0192\u2044\u2039\u203A"
                       u"\u2212\u2030\u201E\u201C\u201D\u2018\u2019\u201A\u2122\uFB01\uFB02"
                       u"\u0141\u0152\u0160\u0178\u017D\u0131\u0142\u0153\u0161\u017E\0\u20AC"sv;
constexpr size_t softHyphen = 0xAD;

char16_t pdfDocCharacter(size_t byte) {
  if (byte - accentsStart < accents.size()) {
    return accents[byte - accentsStart];
  }
  if (byte - marksStart < marks.size()) {
    return marks[byte - marksStart];
  }
  return byte == softHyphen ? u'\0' : static_cast<char16_t>(byte);
}

std::string pdfDocBytes(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) {
    size_t byte = 1;
    while (byte < 256 && pdfDocCharacter(byte) != unit) {
      ++byte;
    }
    if (byte == 256) {
      return {};
    }
    bytes.push_back(static_cast<char>(byte));
  }
  return bytes;
}

/// Empty when the encoding lacks a character.
std::string bytesIn(const char* encoding, std::u16string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open(encoding, &status),
                                                                     &ucnv_close);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &status);
  std::string bytes(text.size() + 1, '\0');
  const int32_t length =
      ucnv_fromUChars(converter.get(), bytes.data(), static_cast<int32_t>(bytes.size()),
                      text.data(), static_cast<int32_t>(text.size()), &status);
  bytes.resize(U_FAILURE(status) ? 0 : static_cast<size_t>(length));
  return bytes;
}

/// Characters that a password's prescribed form leaves out.
bool isMappedToNothing(char16_t unit) {
  return unit == 0x00AD || unit == 0x034F || unit == 0x1806 || (unit >= 0x180B && unit <= 0x180D) ||
         (unit >= 0x200B && unit <= 0x200D) || unit == 0x2060 ||
         (unit >= 0xFE00 && unit <= 0xFE0F) || unit == 0xFEFF;
}

std::u16string preparedForm(std::u16string_view password) {
  std::u16string text(password);
  std::erase_if(text, isMappedToNothing);
  // No character has a compatibility form longer than 18 units.
  std::u16string form(text.size() * 18 + 1, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = unorm2_normalize(unorm2_getNFKCInstance(&status), text.data(),
                                          static_cast<int32_t>(text.size()), form.data(),
                                          static_cast<int32_t>(form.size()), &status);
  form.resize(U_FAILURE(status) ? 0 : static_cast<size_t>(length));
  return form;
}

void addForms(std::vector<std::string>& list, std::u16string_view typed) {
  for (const std::string& form :
       {toUtf8(typed), pdfDocBytes(typed), bytesIn("windows-1252", typed),
        toUtf8(preparedForm(typed)), bytesIn("ISO-8859-1", typed), bytesIn("macintosh", typed)}) {
    if (!form.empty() && std::find(list.begin(), list.end(), form) == list.end()) {
      list.push_back(form);
    }
  }
}

} // namespace

std::vector<std::string> passwordCandidates(std::u16string_view typed) {
  // Longer ones only cost time: every kind of encryption cuts at 32 or 127 bytes.
  constexpr size_t longest = 1024;
  if (typed.size() > longest) {
    return {toUtf8(typed)};
  }
  std::vector<std::string> list;
  addForms(list, typed);
  if (!typed.empty() && typed.back() == u' ') {
    addForms(list, typed.substr(0, typed.size() - 1));
  }
  return list;
}

std::string textOfPdfDocBytes(std::string_view bytes) {
  std::u16string text;
  for (const char byte : bytes) {
    text.push_back(pdfDocCharacter(static_cast<unsigned char>(byte)));
    if (text.back() == 0) {
      return {};
    }
  }
  return toUtf8(text);
}

} // namespace common
