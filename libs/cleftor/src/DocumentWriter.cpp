#include "DocumentWriter.h"

#include "Failure.h"
#include "cleftor/cleftor.h"

#include <array>
#include <cstdio>

namespace cleftor {

namespace {

/** Room for the longest length that the cross-reference table could still point behind. */
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

DocumentWriter::DocumentWriter(AtomicFile& file, const std::string& version)
    : file_(file), offsets_(1) {
  // The four high bytes tell tools which guess at a file's kind that it is binary.
  file_.append("%PDF-" + version + "\n%\xE2\xE3\xCF\xD3\n");
}

int DocumentWriter::reserve() {
  offsets_.push_back(0);
  return static_cast<int>(offsets_.size()) - 1;
}

void DocumentWriter::beginObject(int number) {
  if (file_.size() > largestOffset) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "The pages are too large for one file");
  }
  offsets_[static_cast<size_t>(number)] = file_.size();
  file_.append(std::to_string(number));
  file_.append(" 0 obj\n");
}

void DocumentWriter::object(int number, std::string_view body) {
  beginObject(number);
  file_.append(body);
  file_.append("\nendobj\n");
}

void DocumentWriter::stream(int number, std::string_view dictionary, std::string_view data) {
  beginObject(number);
  file_.append("<<");
  file_.append(dictionary);
  file_.append("/Length ");
  file_.append(std::to_string(data.size()));
  file_.append(">>\nstream\n");
  file_.append(data);
  file_.append("\nendstream\nendobj\n");
}

void DocumentWriter::beginStream(int number, std::string_view dictionary) {
  beginObject(number);
  file_.append("<<");
  file_.append(dictionary);
  file_.append("/Length ");
  lengthPlace_ = file_.size();
  file_.append(lengthRoom);
  file_.append(">>\nstream\n");
  dataStart_ = file_.size();
}

void DocumentWriter::endStream() {
  const uint64_t length = file_.size() - dataStart_;
  if (length > largestOffset) {
    throw Failure(CLEFTOR_CANNOT_WRITE, "The pages are too large for one file");
  }
  file_.overwrite(lengthPlace_, std::to_string(length));
  file_.append("\nendstream\nendobj\n");
}

void DocumentWriter::finish(int root, int info, const std::string& id) {
  const uint64_t table = file_.size();
  std::string out = "xref\n0 " + std::to_string(offsets_.size()) + "\n0000000000 65535 f \n";
  std::array<char, 24> line{};
  for (size_t i = 1; i < offsets_.size(); ++i) {
    const bool used = offsets_[i] != 0;
    std::snprintf(line.data(), line.size(), "%010llu %05d %c \n",
                  static_cast<unsigned long long>(offsets_[i]), used ? 0 : 65535, used ? 'n' : 'f');
    out.append(line.data(), 20);
  }
  out += "trailer\n<</Size " + std::to_string(offsets_.size()) + "/Root " + std::to_string(root) +
         " 0 R";
  if (info != 0) {
    out += "/Info " + std::to_string(info) + " 0 R";
  }
  out +=
      "/ID[" + hexText(id) + hexText(id) + "]>>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
  file_.append(out);
}

} // namespace cleftor
