#ifndef MELDER_PART_FIELDS_H
#define MELDER_PART_FIELDS_H

#include "document.h"

#include <map>
#include <string>
#include <vector>

namespace melder {

/** The topmost fields of a part: those its form lists, then those only its pages show. */
[[nodiscard]] std::vector<QPDFObjectHandle> topFields(Document& part);

/**
 * Makes the fields independent of the part's form: its defaults go into the fields, fonts get
 * their new names, and a signature, which would vouch for bytes that are no more, goes.
 */
void detachFields(Document& part, const std::vector<QPDFObjectHandle>& fields,
                  const std::map<std::string, std::string>& newFonts);

} // namespace melder

#endif
