#ifndef CLEFTOR_FAILURE_H
#define CLEFTOR_FAILURE_H

#include <cstdint>
#include <stdexcept>
#include <string>

namespace cleftor {

/** What stops an operation inside the library; turned into code and text before the C interface. */
class Failure : public std::runtime_error {
public:
  Failure(int32_t code, const std::string& text) : std::runtime_error(text), m_code(code) {}

  /** One of the negative CLEFTOR_... results. */
  int32_t code() const { return m_code; }

private:
  int32_t m_code;
};

} // namespace cleftor

#endif
