#include "Unicode.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

namespace glyphrun {

namespace {

const UNormalizer2* composer() {
  static const UNormalizer2* const instance = [] {
    UErrorCode error = U_ZERO_ERROR;
    return unorm2_getNFCInstance(&error);
  }();
  return instance;
}

const UNormalizer2* compatibilityComposer() {
  static const UNormalizer2* const instance = [] {
    UErrorCode error = U_ZERO_ERROR;
    return unorm2_getNFKCInstance(&error);
  }();
  return instance;
}

std::u16string normalized(const UNormalizer2* form, std::u16string_view text) {
  if (form == nullptr || text.empty()) {
    return std::u16string(text);
  }
  // Compatibility forms grow up to 18 times (U+FDFA).
  std::u16string out(text.size() * 18 + 1, u'\0');
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t length =
      unorm2_normalize(form, text.data(), static_cast<std::int32_t>(text.size()), out.data(),
                       static_cast<std::int32_t>(out.size()), &error);
  if (U_FAILURE(error)) {
    return std::u16string(text);
  }
  out.resize(static_cast<std::size_t>(length));
  return out;
}

bool isBlank(char32_t c) {
  switch (c) {
  case 0x20:
  case 0x85:
  case 0xA0:
  case 0x1680:
  case 0x2028:
  case 0x2029:
  case 0x202F:
  case 0x205F:
  case 0x3000:
    return true;
  default:
    return (c >= 0x09 && c <= 0x0D) || (c >= 0x2000 && c <= 0x200A);
  }
}

bool isNothing(char32_t c) {
  return c == 0x200B || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
         (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF || (c >= 0xFFF9 && c <= 0xFFFB);
}

bool isUnknown(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == replacementCharacter ||
         (c >= 0xE000 && c <= 0xF8FF) || c >= 0xF0000 || (c & 0xFFFE) == 0xFFFE;
}

// Forms that exist for the sake of typesetting; other compatibility characters (a superscript two,
// a circled one) mean something of their own.
bool isPresentationForm(char32_t c) {
  return (c >= 0xFB00 && c <= 0xFB4F) || (c >= 0xFB50 && c <= 0xFDFF) ||
         (c >= 0xFE70 && c <= 0xFEFC) || (c >= 0x0132 && c <= 0x0133) || c == 0x0149;
}

bool isWide(char32_t c) {
  return (c >= 0x3001 && c <= 0x30FF) || (c >= 0x3400 && c <= 0x9FFF) ||
         (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFF01 && c <= 0xFF65) ||
         (c >= 0x20000 && c <= 0x3FFFF);
}

constexpr std::pair<char16_t, char16_t> accents[] = {
    {0x0060, 0x0300}, {0x00B4, 0x0301}, {0x005E, 0x0302}, {0x02C6, 0x0302},
    {0x007E, 0x0303}, {0x02DC, 0x0303}, {0x00AF, 0x0304}, {0x02C9, 0x0304},
    {0x02D8, 0x0306}, {0x02D9, 0x0307}, {0x00A8, 0x0308}, {0x02DA, 0x030A},
    {0x02DD, 0x030B}, {0x02C7, 0x030C}, {0x00B8, 0x0327}, {0x02DB, 0x0328}};

bool isLeftToRightInBidi(char32_t c) {
  const UCharDirection direction = u_charDirection(static_cast<UChar32>(c));
  return direction == U_LEFT_TO_RIGHT || direction == U_EUROPEAN_NUMBER ||
         direction == U_ARABIC_NUMBER;
}

bool bindsNumbers(char32_t c) {
  const UCharDirection direction = u_charDirection(static_cast<UChar32>(c));
  return direction == U_COMMON_NUMBER_SEPARATOR || direction == U_EUROPEAN_NUMBER_SEPARATOR ||
         direction == U_EUROPEAN_NUMBER_TERMINATOR;
}

bool isMark(char32_t c) {
  const auto type = u_charType(static_cast<UChar32>(c));
  return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_COMBINING_SPACING_MARK;
}

bool opens(char32_t c) {
  return u_charType(static_cast<UChar32>(c)) == U_START_PUNCTUATION;
}
bool closes(char32_t c) {
  return u_charType(static_cast<UChar32>(c)) == U_END_PUNCTUATION;
}

} // namespace

bool isPunctuation(char32_t c) {
  return u_ispunct(static_cast<UChar32>(c)) != 0;
}

std::uint16_t traitsOf(char32_t c) {
  if (c < 0x80) {
    if (c > 0x20 && c < 0x7F) {
      if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) {
        return TraitLetter;
      }
      return c == 0x5E || c == 0x60 || c == 0x7E ? TraitAccent : 0;
    }
  }
  if (isBlank(c)) {
    return TraitBlank;
  }
  if (isNothing(c)) {
    return TraitNothing;
  }
  if (isUnknown(c)) {
    return TraitUnknown;
  }
  std::uint16_t traits = 0;
  const UCharDirection direction = u_charDirection(static_cast<UChar32>(c));
  if (direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC) {
    traits |= TraitRightToLeft;
  } else if (direction == U_LEFT_TO_RIGHT) {
    traits |= TraitLetter;
  }
  if (isWide(c)) {
    traits |= TraitWide;
  }
  if (isMark(c)) {
    traits |= TraitMark | TraitCombining;
  } else if (composer() != nullptr &&
             !unorm2_hasBoundaryBefore(composer(), static_cast<UChar32>(c))) {
    traits |= TraitCombining;
  }
  if (c < 0x10000 && combiningFormOf(static_cast<char16_t>(c)) != 0) {
    traits |= TraitAccent;
  }
  return traits;
}

std::uint16_t traitsOf(std::u16string_view text) {
  constexpr std::uint16_t whole = TraitBlank | TraitNothing | TraitAccent | TraitMark | TraitWide;
  std::uint16_t any = 0;
  std::uint16_t every = whole;
  for (std::size_t at = 0; at < text.size();) {
    const std::uint16_t traits = traitsOf(takeCodePoint(text, at));
    any |= traits;
    every &= traits;
  }
  if (text.empty()) {
    return TraitNothing;
  }
  return static_cast<std::uint16_t>((any & ~whole) | every);
}

std::u16string spelledOut(std::u16string_view text) {
  std::u16string out;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = takeCodePoint(text, at);
    std::u16string one;
    appendCodePoint(one, c);
    out += isPresentationForm(c) ? normalized(compatibilityComposer(), one) : one;
  }
  compose(out);
  return out;
}

void compose(std::u16string& text) {
  const UNormalizer2* form = composer();
  if (form == nullptr) {
    return;
  }
  UErrorCode error = U_ZERO_ERROR;
  const auto length = static_cast<std::int32_t>(text.size());
  if (unorm2_isNormalized(form, text.data(), length, &error) || U_FAILURE(error)) {
    return;
  }
  text = normalized(form, text);
}

char16_t combiningFormOf(char16_t accent) {
  for (const auto& [spacing, combining] : accents) {
    if (spacing == accent) {
      return combining;
    }
  }
  return 0;
}

char16_t accentedBody(char16_t letter) {
  return letter == 0x0131 ? u'i' : letter == 0x0237 ? u'j' : letter;
}

namespace {

using CodePoints = std::vector<char32_t>;

/// Reverses each stretch between characters that `belongs` accepts and that only `binds` interrupt.
template <typename Belongs, typename Binds>
void reverseStretches(CodePoints& text, Belongs belongs, Binds binds) {
  for (std::size_t from = 0; from < text.size(); ++from) {
    if (!belongs(text[from])) {
      continue;
    }
    std::size_t to = from + 1;
    for (std::size_t i = to; i < text.size(); ++i) {
      if (belongs(text[i])) {
        to = i + 1;
      } else if (!binds(text[i])) {
        break;
      }
    }
    std::reverse(text.begin() + static_cast<std::ptrdiff_t>(from),
                 text.begin() + static_cast<std::ptrdiff_t>(to));
    from = to - 1;
  }
}

bool isRightToLeft(char32_t c) {
  return (traitsOf(c) & TraitRightToLeft) != 0;
}

// Some producers draw a mark before its letter and some behind it. No word begins with a mark.
void putMarksBehindLetters(CodePoints& text) {
  if (text.empty() || !isMark(text.front())) {
    return;
  }
  for (auto from = text.begin(); from != text.end();) {
    const auto letter = std::find_if_not(from, text.end(), isMark);
    if (letter == text.end()) {
      break;
    }
    from = std::rotate(from, letter, letter + 1) + (letter - from);
  }
}

/// What stands behind a word and never before it.
bool endsWord(char32_t c) {
  return c < 0x80 ? std::u32string_view(U":;,.!?").find(c) != std::u32string_view::npos
                  : c == 0x060C || c == 0x061B || c == 0x061F; // the same in Arabic
}

// A right-to-left label in a left-to-right line has its colon at the right.
void putEndsBehindWord(CodePoints& text) {
  const auto word = std::find_if_not(text.begin(), text.end(), endsWord);
  if (word != text.end()) {
    std::rotate(text.begin(), word, text.end());
  }
}

// Fonts may name a mirrored bracket by its shape; a word opens before it closes.
void mirrorBrackets(CodePoints& text) {
  const auto mirror = [](char32_t& c) {
    c = static_cast<char32_t>(u_charMirror(static_cast<UChar32>(c)));
  };
  if (!text.empty() && closes(text.front())) {
    mirror(text.front());
  }
  const auto last = std::find_if_not(text.rbegin(), text.rend(), endsWord);
  if (last != text.rend() && text.rend() - last > 1 && opens(*last)) {
    mirror(*last);
  }
}

} // namespace

void visualToLogical(std::u16string& text) {
  CodePoints points;
  std::ptrdiff_t balance = 0;
  for (std::size_t at = 0; at < text.size();) {
    points.push_back(takeCodePoint(text, at));
    const std::uint16_t traits = traitsOf(points.back());
    balance += (traits & TraitRightToLeft) != 0 ? 1 : (traits & TraitLetter) != 0 ? -1 : 0;
  }
  if (balance < 0) {
    // A left-to-right word, such as an address, with a right-to-left piece in it.
    reverseStretches(points, isRightToLeft, [](char32_t c) { return !isLeftToRightInBidi(c); });
  } else {
    std::reverse(points.begin(), points.end());
    putMarksBehindLetters(points);
    reverseStretches(points, isLeftToRightInBidi, bindsNumbers);
    putEndsBehindWord(points);
    mirrorBrackets(points);
  }
  text.clear();
  for (const char32_t c : points) {
    appendCodePoint(text, c);
  }
}

void appendCodePoint(std::u16string& text, char32_t c) {
  if (c > 0x10FFFF || U_IS_SURROGATE(c)) {
    c = replacementCharacter;
  }
  if (U_IS_BMP(c)) {
    text.push_back(static_cast<char16_t>(c));
  } else {
    text.append({U16_LEAD(c), U16_TRAIL(c)});
  }
}

char32_t takeCodePoint(std::u16string_view text, std::size_t& at) {
  char32_t c = 0;
  U16_NEXT_OR_FFFD(text, at, text.size(), c);
  return c;
}

} // namespace glyphrun
