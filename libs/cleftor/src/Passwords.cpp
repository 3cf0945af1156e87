#include "Passwords.h"

#include "Utf16.h"

#include <qpdf/QUtil.hh>
#include <unicode/unorm2.h>

#include <algorithm>

namespace cleftor {

namespace {

class Candidates {
public:
  void add(const std::string& bytes) {
    if (std::find(m_list.begin(), m_list.end(), bytes) == m_list.end()) {
      m_list.push_back(bytes);
    }
  }

  std::vector<std::string> take() { return std::move(m_list); }

private:
  std::vector<std::string> m_list;
};

/** Characters that a password's prescribed form leaves out. */
bool isMappedToNothing(char16_t unit) {
  return unit == 0x00AD || unit == 0x034F || unit == 0x1806 || (unit >= 0x180B && unit <= 0x180D) ||
         (unit >= 0x200B && unit <= 0x200D) || unit == 0x2060 ||
         (unit >= 0xFE00 && unit <= 0xFE0F) || unit == 0xFEFF;
}

/** The compatibility-composed form without invisible characters; the text itself when there is
 * none. */
std::string preparedForm(const std::string& password) {
  std::u16string text = toUtf16(password);
  text.erase(std::remove_if(text.begin(), text.end(), isMappedToNothing), text.end());
  UErrorCode status = U_ZERO_ERROR;
  const UNormalizer2* const form = unorm2_getNFKCInstance(&status);
  if (U_FAILURE(status)) {
    return password;
  }
  // No character has a compatibility form longer than 18 units.
  std::u16string result(text.size() * 18 + 1, u'\0');
  const int32_t length =
      unorm2_normalize(form, text.data(), static_cast<int32_t>(text.size()), result.data(),
                       static_cast<int32_t>(result.size()), &status);
  if (U_FAILURE(status) || length < 0) {
    return password;
  }
  result.resize(static_cast<size_t>(length));
  return toUtf8(result.c_str());
}

void addEncodings(Candidates& candidates, const std::string& password) {
  candidates.add(password);
  std::string encoded;
  if (QUtil::utf8_to_pdf_doc(password, encoded)) {
    candidates.add(encoded);
  }
  if (QUtil::utf8_to_win_ansi(password, encoded)) {
    candidates.add(encoded);
  }
  candidates.add(preparedForm(password));
  for (const std::string& repaired : QUtil::possible_repaired_encodings(password)) {
    candidates.add(repaired);
  }
}

} // namespace

std::vector<std::string> passwordCandidates(const std::string& password) {
  // Longer ones only cost time: every handler cuts at 32 or 127 bytes.
  constexpr size_t longest = 1024;
  Candidates candidates;
  if (password.size() <= longest) {
    addEncodings(candidates, password);
    if (!password.empty() && password.back() == ' ') {
      addEncodings(candidates, password.substr(0, password.size() - 1));
    }
  }
  candidates.add("");
  return candidates.take();
}

} // namespace cleftor
