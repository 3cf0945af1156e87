// The last failure, kept for each thread: views may be used by several.
#pragma once

#include "PdfFile.h"

#include <string>

namespace glyphrun {

/** `reason` is UTF-8 and names no password. */
void setLastError(Result code, const std::string& reason) noexcept;
Result lastErrorCode() noexcept;
const char16_t* lastErrorText() noexcept;

} // namespace glyphrun
