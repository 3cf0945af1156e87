// StringPipe: data of a stream in memory.
#pragma once

#include <qpdf/Pipeline.hh>

#include <cstddef>
#include <stdexcept>
#include <string>

namespace pages {

/// Adds to a string, which it does not own. Throws std::length_error where that would grow beyond
/// `most` bytes.
class StringPipe : public Pipeline {
public:
  StringPipe(std::string& target, size_t most)
      : Pipeline("string", nullptr), m_target(target), m_most(most) {}

  void write(const unsigned char* data, size_t length) override {
    if (length > m_most - m_target.size()) {
      throw std::length_error("more data than there is room for");
    }
    m_target.append(reinterpret_cast<const char*>(data), length);
  }
  void finish() override {}

private:
  std::string& m_target;
  size_t m_most;
};

} // namespace pages
