// Failure: what stops an operation inside a library, and how its C interface tells of it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace common {

/// Results that the C interfaces of all libraries share; each has more of its own.
constexpr int32_t ok = 0;
constexpr int32_t outOfMemory = -3;
constexpr int32_t cannotOpen = -4;
constexpr int32_t cannotWrite = -5; ///< of the libraries that write
constexpr int32_t damaged = -8;

/// Thrown inside a library, never across its interface. `what()` is English, UTF-8, and names the
/// file and the reason but no password.
class Failure : public std::runtime_error {
public:
  Failure(int32_t code, const std::string& text) : std::runtime_error(text), m_code(code) {}

  /// One of the negative results of the library's C interface.
  [[nodiscard]] int32_t code() const { return m_code; }

private:
  int32_t m_code;
};

/// Throw Failure `cannotOpen` and `cannotWrite`.
[[noreturn]] void refuseToOpen(const std::string& path, const std::string& reason);
[[noreturn]] void refuseToWrite(const std::string& path, const std::string& reason);

/// Code and text of the last failure, as a C interface hands them out.
class LastError {
public:
  /// `text` is UTF-8; without memory the code stands alone.
  void set(int32_t code, std::string_view text) noexcept;
  void clear() noexcept { set(ok, {}); }

  /// Keeps the exception that is being handled, and returns its code: the one of a Failure,
  /// `outOfMemory`, or `unforeseen` for any other. For use in a catch (...) alone.
  int32_t keepCaught(int32_t unforeseen) noexcept;

  [[nodiscard]] int32_t code() const { return m_code; }
  /// Valid until the next change.
  [[nodiscard]] const char16_t* text() const { return m_text.c_str(); }

private:
  int32_t m_code = ok;
  std::u16string m_text;
};

} // namespace common
