// The forms in which a typed password may have been used when a file was encrypted.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace glyphrun {

/**
 * Passwords to try one after the other, as UTF-8 text for pdf_authenticate_password. `byteEncoded`
 * is for the older encryption, which takes single bytes: MuPDF turns each character into its byte
 * of PDFDocEncoding, so other encodings are given as the characters that stand for their bytes.
 */
std::vector<std::string> passwordCandidates(std::u16string_view typed, bool byteEncoded);

} // namespace glyphrun
