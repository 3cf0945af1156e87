#include "update.h"

#include "failure.h"
#include "melder/melder.h"

#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>

#include <algorithm>
#include <cstdio>

namespace melder {

namespace {

constexpr size_t kBufferLimit = size_t{1} << 20;
constexpr size_t kPackedLimit = 100;
/** Object numbers beyond this are refused by readers. */
constexpr int kHighestNumber = 8388607;
constexpr uint64_t kTableReach = 9999999999; // ten digits hold an offset

std::string deflated(const std::string& data) {
  std::string result;
  Pl_String sink("update", nullptr, result);
  Pl_Flate deflate("update", &sink, Pl_Flate::a_deflate);
  deflate.writeString(data);
  deflate.finish();
  return result;
}

void putBigEndian(std::string& out, uint64_t value, int width) {
  for (int i = width - 1; i >= 0; --i) {
    out += static_cast<char>((value >> (8 * i)) & 0xFF);
  }
}

int bytesFor(uint64_t value) {
  int width = 1;
  while (value > 0xFF) {
    value >>= 8;
    ++width;
  }
  return width;
}

/** A whole table has no gaps: numbers that nobody uses are listed as free. */
std::vector<XrefEntry> withGapsFilled(const std::vector<XrefEntry>& entries, int size) {
  std::vector<XrefEntry> filled(static_cast<size_t>(size));
  for (int number = 0; number < size; ++number) {
    filled[static_cast<size_t>(number)] = {.number = number, .generation = 65535, .where = 0};
  }
  for (const XrefEntry& entry : entries) {
    filled.at(static_cast<size_t>(entry.number)) = entry;
  }
  return filled;
}

bool isFree(const XrefEntry& entry) {
  return entry.where == 0;
}

/** Calls `run(first, last)` for each unbroken run of numbers; both are places in `entries`. */
template <typename Run> void forEachRun(const std::vector<XrefEntry>& entries, Run run) {
  for (size_t first = 0; first < entries.size();) {
    size_t last = first;
    while (last + 1 < entries.size() && entries[last + 1].number == entries[last].number + 1) {
      ++last;
    }
    run(first, last);
    first = last + 1;
  }
}

} // namespace

Update::Update(const DiskFile& file, XrefKind kind, int nextNumber)
    : m_file(file), m_kind(kind), m_next(nextNumber), m_start(file.stamp().size),
      m_flushed(m_start) {
  emit("\n"); // the file may end without one
}

QPDFObjGen Update::reserve() {
  if (m_next > kHighestNumber) {
    throw Failure(MELDER_CANNOT_WRITE, m_file.path() + ": cannot write: too many objects");
  }
  return QPDFObjGen(m_next++, 0);
}

void Update::emit(std::string_view bytes) {
  m_buffer += bytes;
  if (m_buffer.size() >= kBufferLimit) {
    flush();
  }
}

void Update::flush() {
  m_file.write(m_flushed, m_buffer);
  m_flushed += m_buffer.size();
  m_buffer.clear();
}

void Update::open(QPDFObjGen id) {
  m_entries.push_back({.number = id.getObj(), .generation = id.getGen(), .where = end()});
  emit(std::to_string(id.getObj()) + ' ' + std::to_string(id.getGen()) + " obj\n");
}

void Update::put(QPDFObjGen id, std::string_view body) {
  if (m_kind == XrefKind::Stream && id.getGen() == 0) {
    m_packed.emplace_back(id.getObj(), body);
    if (m_packed.size() >= kPackedLimit) {
      flushPacked();
    }
    return;
  }
  open(id);
  emit(body);
  emit("\nendobj\n");
}

void Update::putStream(QPDFObjGen id, DictText dictionary, std::string_view data) {
  dictionary["/Length"] = std::to_string(data.size());
  open(id);
  emit(written(dictionary));
  emit("\nstream\n");
  emit(data);
  emit("\nendstream\nendobj\n");
}

QPDFObjGen Update::add(std::string_view body) {
  const QPDFObjGen id = reserve();
  put(id, body);
  return id;
}

void Update::flushPacked() {
  if (m_packed.empty()) {
    return;
  }
  const QPDFObjGen holder = reserve();
  std::string index;
  std::string bodies;
  for (size_t i = 0; i < m_packed.size(); ++i) {
    const auto& [number, body] = m_packed[i];
    index += std::to_string(number) + ' ' + std::to_string(bodies.size()) + ' ';
    bodies += body + '\n';
    m_entries.push_back({.number = number,
                         .where = static_cast<uint64_t>(holder.getObj()),
                         .index = static_cast<int>(i)});
  }
  DictText dictionary = {{"/Type", "/ObjStm"}, {"/Filter", "/FlateDecode"}};
  dictionary["/N"] = std::to_string(m_packed.size());
  dictionary["/First"] = std::to_string(index.size());
  m_packed.clear();
  putStream(holder, std::move(dictionary), deflated(index + bodies));
}

void Update::finish(const DictText& trailer, XrefChain& chain) {
  flushPacked();
  DictText full = trailer;
  QPDFObjGen own;
  if (m_kind == XrefKind::Stream) {
    own = reserve();
    m_entries.push_back({.number = own.getObj(), .where = end()});
  }
  const uint64_t place = end();
  XrefChain::Section section = chain.next(std::move(m_entries));
  full["/Size"] = std::to_string(m_next);
  full["/MelderSections"] = std::to_string(chain.depth());
  if (section.previous == 0) {
    section.entries = withGapsFilled(section.entries, m_next);
  } else {
    full["/Prev"] = std::to_string(section.previous);
  }
  if (m_kind == XrefKind::Stream) {
    writeStream(std::move(section), own, std::move(full));
  } else {
    writeTable(section);
    emit("trailer\n" + written(full) + '\n');
  }
  emit("startxref\n" + std::to_string(place) + "\n%%EOF\n");
  flush();
  chain.placed(place);
}

void Update::writeTable(const XrefChain::Section& section) {
  emit("xref\n");
  forEachRun(section.entries, [&](size_t first, size_t last) {
    emit(std::to_string(section.entries[first].number) + ' ' + std::to_string(last - first + 1) +
         '\n');
    for (size_t i = first; i <= last; ++i) {
      const XrefEntry& entry = section.entries[i];
      if (entry.where > kTableReach) {
        throw Failure(MELDER_CANNOT_WRITE, m_file.path() + ": cannot write: the file is too large");
      }
      char line[32];
      (void)std::snprintf(line, sizeof line, "%010llu %05d %c \n",
                          static_cast<unsigned long long>(entry.where), entry.generation,
                          isFree(entry) ? 'f' : 'n');
      emit(line);
    }
  });
}

void Update::writeStream(XrefChain::Section section, QPDFObjGen id, DictText trailer) {
  uint64_t farthest = 0;
  for (const XrefEntry& entry : section.entries) {
    farthest = std::max(farthest, entry.where);
  }
  const int width = bytesFor(farthest);
  std::string index;
  std::string data;
  forEachRun(section.entries, [&](size_t first, size_t last) {
    index += std::to_string(section.entries[first].number) + ' ' +
             std::to_string(last - first + 1) + ' ';
    for (size_t i = first; i <= last; ++i) {
      const XrefEntry& entry = section.entries[i];
      const bool packed = entry.index >= 0;
      data += isFree(entry) ? '\0' : (packed ? '\2' : '\1');
      putBigEndian(data, entry.where, width);
      putBigEndian(data, static_cast<uint64_t>(packed ? entry.index : entry.generation), 2);
    }
  });
  trailer["/Type"] = "/XRef";
  trailer["/W"] = "[1 " + std::to_string(width) + " 2]";
  trailer["/Index"] = '[' + index + ']';
  trailer["/Filter"] = "/FlateDecode";
  const std::string packedData = deflated(data);
  trailer["/Length"] = std::to_string(packedData.size());
  emit(std::to_string(id.getObj()) + " 0 obj\n" + written(trailer) + "\nstream\n" + packedData +
       "\nendstream\nendobj\n");
}

} // namespace melder
