// What the text reader needs to know of Unicode, on top of ICU.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace glyphrun {

constexpr char16_t replacementCharacter = 0xFFFD;

/// What a glyph's text means for the forming of words; combined by "or".
enum TextTrait : std::uint16_t {
  TraitBlank = 1,       ///< ends a word
  TraitNothing = 2,     ///< invisible mark that is no part of a word
  TraitUnknown = 4,     ///< no way to Unicode
  TraitRightToLeft = 8, ///< a letter of a right-to-left script
  TraitCombining = 16,  ///< may compose with what stands before it
  TraitAccent = 32,     ///< a spacing accent, which some fonts draw over a letter
  TraitLetter = 64,     ///< a letter of a left-to-right script
  TraitMark = 128,      ///< stands over, under or around the letter before it
  TraitWide = 1024      ///< Chinese or Japanese, written without blanks and justified by gaps
};

/// Traits of one code point.
std::uint16_t traitsOf(char32_t c);

/// Traits of a glyph's text: blank or nothing only when all of it is.
std::uint16_t traitsOf(std::u16string_view text);

/// Ligatures and presentation forms spelled out, then composed (NFC).
std::u16string spelledOut(std::u16string_view text);

/// Composes (NFC) in place; without memory the text stays as it was.
void compose(std::u16string& text);

/// The combining character of a spacing accent, or 0.
char16_t combiningFormOf(char16_t accent);

/// The letter that an accent composes with: dotless i and j are the bodies of i and j.
char16_t accentedBody(char16_t letter);

bool isPunctuation(char32_t c);

/// Puts the text of a right-to-left word, given as it stands on the page from left to right, in
/// reading order.
void visualToLogical(std::u16string& text);

void appendCodePoint(std::u16string& text, char32_t c);

/// Takes the code point at `at` and moves behind it; an unpaired surrogate gives U+FFFD.
char32_t takeCodePoint(std::u16string_view text, std::size_t& at);

} // namespace glyphrun
