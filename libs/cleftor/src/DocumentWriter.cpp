#include "DocumentWriter.h"

#include "cleftor/cleftor.h"
#include "common/Failure.h"

#include <array>
#include <cstdio>

namespace cleftor {

namespace {

/// Room for the longest length that the cross-reference table could still point behind.
constexpr std::string_view lengthRoom = "          ";
constexpr uint64_t largestOffset = 9'999'999'999;

std::string hexText(const std::string& bytes) {
  static constexpr std::string_view digits = "0123456789abcdef";
  std::string out = "<";
  for (const char ch : bytes) {
    const auto byte = static_cast<unsigned char>(ch);
    out.push_back(digits[byte >> 4]);
    out.push_back(digits[byte & 15]);
  }
  return out + ">";
}

} // namespace

DocumentWriter::DocumentWriter(common::AsideFile& file, const std::string& version)
    : m_file(file), m_offsets(1) {
  // The four high bytes tell tools which guess at a file's kind that it is binary.
  m_file.append("%PDF-" + version + "\n%\xE2\xE3\xCF\xD3\n");
}

int DocumentWriter::reserve() {
  m_offsets.push_back(0);
  return static_cast<int>(m_offsets.size()) - 1;
}

void DocumentWriter::beginObject(int number) {
  if (m_file.size() > largestOffset) {
    throw common::Failure(CLEFTOR_CANNOT_WRITE, "The pages are too large for one file");
  }
  m_offsets[static_cast<size_t>(number)] = m_file.size();
  m_file.append(std::to_string(number));
  m_file.append(" 0 obj\n");
}

void DocumentWriter::object(int number, std::string_view body) {
  beginObject(number);
  m_file.append(body);
  m_file.append("\nendobj\n");
}

void DocumentWriter::stream(int number, std::string_view dictionary, std::string_view data) {
  beginObject(number);
  m_file.append("<<");
  m_file.append(dictionary);
  m_file.append("/Length ");
  m_file.append(std::to_string(data.size()));
  m_file.append(">>\nstream\n");
  m_file.append(data);
  m_file.append("\nendstream\nendobj\n");
}

void DocumentWriter::beginStream(int number, std::string_view dictionary) {
  beginObject(number);
  m_file.append("<<");
  m_file.append(dictionary);
  m_file.append("/Length ");
  m_lengthPlace = m_file.size();
  m_file.append(lengthRoom);
  m_file.append(">>\nstream\n");
  m_dataStart = m_file.size();
}

void DocumentWriter::endStream() {
  const uint64_t length = m_file.size() - m_dataStart;
  if (length > largestOffset) {
    throw common::Failure(CLEFTOR_CANNOT_WRITE, "The pages are too large for one file");
  }
  m_file.overwrite(m_lengthPlace, std::to_string(length));
  m_file.append("\nendstream\nendobj\n");
}

void DocumentWriter::finish(int root, int info, const std::string& id) {
  const uint64_t table = m_file.size();
  std::string out = "xref\n0 " + std::to_string(m_offsets.size()) + "\n0000000000 65535 f \n";
  std::array<char, 24> line{};
  for (size_t i = 1; i < m_offsets.size(); ++i) {
    const bool used = m_offsets[i] != 0;
    std::snprintf(line.data(), line.size(), "%010llu %05d %c \n",
                  static_cast<unsigned long long>(m_offsets[i]), used ? 0 : 65535,
                  used ? 'n' : 'f');
    out.append(line.data(), 20);
  }
  out += "trailer\n<</Size " + std::to_string(m_offsets.size()) + "/Root " + std::to_string(root) +
         " 0 R";
  if (info != 0) {
    out += "/Info " + std::to_string(info) + " 0 R";
  }
  out +=
      "/ID[" + hexText(id) + hexText(id) + "]>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
  m_file.append(out);
}

} // namespace cleftor
