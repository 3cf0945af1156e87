// Passwords: under which bytes a password that was typed may have been stored.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace common {

/// The byte strings to try, likeliest first and each once: as given and without one trailing blank;
/// UTF-8, the PDF document encoding, Windows-1252, ISO 8859-1 and the old Macintosh encoding as far
/// as they know the characters; the compatibility form without invisible characters that newer
/// encryption prescribes. Never the empty one.
[[nodiscard]] std::vector<std::string> passwordCandidates(std::u16string_view typed);

/// The characters (UTF-8) that the bytes stand for in the PDF document encoding, for a reader that
/// turns characters into these bytes itself; empty when a byte stands for none.
[[nodiscard]] std::string textOfPdfDocBytes(std::string_view bytes);

} // namespace common
