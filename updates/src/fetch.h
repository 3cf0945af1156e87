#ifndef UPDATES_FETCH_H
#define UPDATES_FETCH_H

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace updates {

/** A code of the interface and a text for a person. */
class Failure : public std::runtime_error {
public:
  Failure(int32_t code, const std::string& text) : std::runtime_error(text), m_code(code) {}
  int32_t code() const { return m_code; }

private:
  int32_t m_code;
};

struct Fetch {
  std::string address;
  std::string version;
  std::string certificates; /**< empty: the system's */
  long connectSeconds = 10;
  long totalSeconds = 30;
  std::function<bool()> stop;
};

/** The body of the document. Throws a Failure. */
[[nodiscard]] std::string fetchDocument(const Fetch& fetch);

} // namespace updates

#endif
