#ifndef MELDER_FAILURE_H
#define MELDER_FAILURE_H

#include <cstdint>
#include <stdexcept>
#include <string>

namespace melder {

/** Why an append did not happen: one of the MELDER_ codes and a text (UTF-8) that names the file.
 */
class Failure : public std::runtime_error {
public:
  Failure(int32_t code, const std::string& text) : std::runtime_error(text), m_code(code) {}
  [[nodiscard]] int32_t code() const { return m_code; }

private:
  int32_t m_code;
};

} // namespace melder

#endif
