#ifndef CLEFTOR_PASSWORDS_H
#define CLEFTOR_PASSWORDS_H

#include <string>
#include <vector>

namespace cleftor {

/**
 * The byte strings under which a password may have been stored, likeliest first and each once: as
 * given and without one trailing blank; UTF-8, the PDF document encoding, Windows-1252 and mistaken
 * readings of these; the compatibility form without invisible characters that newer handlers
 * prescribe; last of all the empty one, which opens what anybody may open.
 */
std::vector<std::string> passwordCandidates(const std::string& password);

} // namespace cleftor

#endif
