#include "DocumentWriter.h"

#include "Deflater.h"
#include "cleftor/cleftor.h"
#include "common/Failure.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace cleftor {

namespace {

/// Room for the longest length that the cross-reference table could still point behind.
constexpr std::string_view lengthRoom = "          ";
constexpr uint64_t largestOffset = 9'999'999'999;

constexpr const char* firstWithStreams = "1.5";

/// Who wants one of the objects unpacks all of them.
constexpr size_t mostCollected = 200;
constexpr size_t mostCollectedBytes = size_t{256} * 1024;

/// A table of so few rows gains nothing by being packed.
constexpr size_t fewPlaces = 40;

int bytesFor(uint64_t number) {
  int bytes = 1;
  for (; number > 0xFF; number >>= 8) {
    ++bytes;
  }
  return bytes;
}

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

DocumentWriter::DocumentWriter(common::AsideFile& file, const std::string& version,
                               Deflater* deflater)
    : m_file(file), m_deflater(deflater), m_places(1) {
  const std::string told =
      deflater != nullptr ? std::max<std::string>(version, firstWithStreams) : version;
  // The four high bytes tell tools which guess at a file's kind that it is binary.
  m_file.append("%PDF-" + told + "\n%\xE2\xE3\xCF\xD3\n");
}

int DocumentWriter::reserve() {
  m_places.emplace_back();
  return static_cast<int>(m_places.size()) - 1;
}

void DocumentWriter::beginObject(int number) {
  if (m_file.size() > largestOffset) {
    throw common::Failure(CLEFTOR_CANNOT_WRITE, "The pages are too large for one file");
  }
  m_places[static_cast<size_t>(number)].at = m_file.size();
  m_file.append(std::to_string(number));
  m_file.append(" 0 obj\n");
}

void DocumentWriter::object(int number, std::string_view body) {
  if (m_deflater != nullptr) {
    collect(number, body);
    return;
  }
  beginObject(number);
  m_file.append(body);
  m_file.append("\nendobj\n");
}

void DocumentWriter::collect(int number, std::string_view body) {
  m_collected.push_back(number);
  m_collectedHead += std::to_string(number) + ' ' + std::to_string(m_collectedBodies.size()) + ' ';
  m_collectedBodies.append(body);
  m_collectedBodies.push_back('\n');
  if (m_collected.size() >= mostCollected || m_collectedBodies.size() >= mostCollectedBytes) {
    writeCollected();
  }
}

void DocumentWriter::writeCollected() {
  if (m_collected.empty()) {
    return;
  }
  const int number = reserve();
  uint32_t rank = 0;
  for (const int object : m_collected) {
    m_places[static_cast<size_t>(object)] = {static_cast<uint64_t>(number), ++rank};
  }
  stream(number,
         "/Type/ObjStm/N " + std::to_string(rank) + "/First " +
             std::to_string(m_collectedHead.size()) + "/Filter/FlateDecode",
         m_deflater->pack(m_collectedHead + m_collectedBodies));
  m_collected.clear();
  m_collectedHead.clear();
  m_collectedBodies.clear();
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
  writeCollected();
  std::string entries = "/Root " + std::to_string(root) + " 0 R";
  if (info != 0) {
    entries += "/Info " + std::to_string(info) + " 0 R";
  }
  entries += "/ID[" + hexText(id) + hexText(id) + "]";
  const uint64_t table = m_file.size();
  if (m_deflater != nullptr) {
    writeTableStream(entries);
  } else {
    writeTable(entries);
  }
  m_file.append("startxref\n" + std::to_string(table) + "\n%%EOF\n");
}

void DocumentWriter::writeTableStream(const std::string& entries) {
  const int number = reserve();
  const uint64_t table = m_places.back().at = m_file.size(); // it tells of itself
  const int bytes = bytesFor(std::max<uint64_t>(table, m_places.size()));
  const std::string head = "/Type/XRef/Size " + std::to_string(m_places.size()) + "/W[1 " +
                           std::to_string(bytes) + " 2]" + entries;
  if (m_places.size() <= fewPlaces) {
    stream(number, head, tableRows(bytes, false));
    return;
  }
  stream(number,
         head + "/Filter/FlateDecode/DecodeParms<</Predictor 12/Columns " +
             std::to_string(bytes + 3) + ">>",
         m_deflater->pack(tableRows(bytes, true)));
}

void DocumentWriter::writeTable(const std::string& entries) {
  std::string out = "xref\n0 " + std::to_string(m_places.size()) + "\n0000000000 65535 f \n";
  std::array<char, 24> line{};
  for (size_t i = 1; i < m_places.size(); ++i) {
    const uint64_t at = m_places[i].at;
    std::snprintf(line.data(), line.size(), "%010llu %05d %c \n",
                  static_cast<unsigned long long>(at), at != 0 ? 0 : 65535, at != 0 ? 'n' : 'f');
    out.append(line.data(), 20);
  }
  m_file.append(out + "trailer\n<</Size " + std::to_string(m_places.size()) + entries + ">>\n");
}

/// As differences, each row to the one above, they pack well: neighbours are much alike.
std::string DocumentWriter::tableRows(int offsetBytes, bool asDifferences) const {
  std::string rows;
  const size_t width = static_cast<size_t>(offsetBytes) + 3;
  std::string above(width, '\0');
  std::string row(width, '\0');
  const auto put = [&row](size_t first, size_t count, uint64_t value) {
    for (size_t i = first + count; i-- > first; value >>= 8) {
      row[i] = static_cast<char>(value & 0xFF);
    }
  };
  constexpr char up = 2;
  for (size_t i = 0; i < m_places.size(); ++i) {
    const auto& [at, rank] = m_places[i];
    const bool isFree = at == 0;
    put(0, 1, isFree ? 0 : (rank != 0 ? 2 : 1));
    put(1, width - 3, at);
    put(width - 2, 2, isFree ? 65535 : (rank != 0 ? rank - 1 : 0));
    if (!asDifferences) {
      rows += row;
      continue;
    }
    rows.push_back(up);
    for (size_t column = 0; column < width; ++column) {
      rows.push_back(static_cast<char>(row[column] - above[column]));
    }
    std::swap(above, row);
  }
  return rows;
}

} // namespace cleftor
