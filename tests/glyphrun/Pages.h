// Pages made for one test each, read through the library's C interface.
#pragma once

#include <tests/support/PdfBuilder.h>
#include <tests/support/Utf16.h>

#include <glyphrun/glyphrun.h>

#include <string>

namespace glyphruntest {

using folivex::test::narrow;
using folivex::test::wide;
using testpdf::PdfBuilder;

/// Resources of pages: Helvetica as /F, Times as /T; /U and /V (downward) have two-byte codes that
/// are their own text.
inline constexpr const char* plainFonts = "/Font<</F 3 0 R/T 4 0 R/U 5 0 R/V 6 0 R>>";
/// A builder that has these fonts and nothing else.
PdfBuilder newPdf();

std::string repeat(const std::string& text, int times);

/// Operators that show one run of text in Helvetica 10.
std::string show(const std::string& text, int x = 50, int y = 700);

/// A path in a folder of the program's own, which is gone when it ends.
std::string pathFor(const std::string& name);

/// The words of the open file's page in reading order with a blank between them; "text@h,v" each
/// with their places.
std::string extract(int page, bool withPlaces = false);
/// The same of a file that is opened for it.
std::string wordsOf(const std::string& path, int page = 1, bool withPlaces = false);
std::string wordsOf(const PdfBuilder& pdf, int page = 1, bool withPlaces = false);
/// The same of a page with this content.
std::string wordsOfContent(const std::string& content, const std::string& pageEntries = "");

} // namespace glyphruntest
