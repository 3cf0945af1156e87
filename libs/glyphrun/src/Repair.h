// A sound copy of a file that only this library can read.
#pragma once

#include <cstdint>
#include <string>

namespace glyphrun {

/// See glyphrun.h, RepairFile. Throws common::Failure.
std::int32_t repairFile(const std::u16string& path, const std::u16string& password,
                        const std::string& target);

} // namespace glyphrun
