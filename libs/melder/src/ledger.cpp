#include "ledger.h"

#include "digest.h"
#include "disk_file.h"
#include "failure.h"
#include "melder/melder.h"
#include "update.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <qpdf/QPDFXRefEntry.hh>

namespace melder {

namespace {

/** A reader looks for the last words of a file here. */
constexpr uint64_t kTail = 1024;
/** Sections of earlier runs in the chain before the table is written whole again. */
constexpr int kMostSections = 32;
/** Room for the numbers of many appends below the highest that readers take. */
constexpr int kHighestFirstNumber = 8000000;
constexpr size_t kIdBytes = 16;

/** Where the newest cross-reference section begins; nothing if the end of the file is unusual. */
std::optional<uint64_t> lastSection(const DiskFile& file) {
  const uint64_t size = file.stamp().size;
  const uint64_t length = std::min(size, kTail);
  const std::string tail = file.read(size - length, length);
  const size_t word = tail.rfind("startxref");
  const size_t digits =
      word == std::string::npos ? word : tail.find_first_of("0123456789", word + 9);
  uint64_t offset = 0;
  if (digits == std::string::npos ||
      std::from_chars(tail.data() + digits, tail.data() + tail.size(), offset).ec != std::errc() ||
      offset == 0 || offset >= size) {
    return std::nullopt;
  }
  return offset;
}

std::vector<XrefEntry> wholeTable(QPDF& pdf) {
  std::vector<XrefEntry> entries;
  for (const auto& [id, entry] : pdf.getXRefTable()) {
    if (entry.getType() == 1) {
      entries.push_back({.number = id.getObj(),
                         .generation = id.getGen(),
                         .where = static_cast<uint64_t>(entry.getOffset())});
    } else if (entry.getType() == 2) {
      entries.push_back({.number = id.getObj(),
                         .where = static_cast<uint64_t>(entry.getObjStreamNumber()),
                         .index = entry.getObjStreamIndex()});
    }
  }
  return entries;
}

bool isVersion(const std::string& text) {
  return text.size() == 3 && text[1] == '.' && text[0] >= '1' && text[0] <= '2';
}

std::string versionOf(QPDF& pdf) {
  std::string version = pdf.getPDFVersion();
  QPDFObjectHandle later = pdf.getRoot().getKey("/Version");
  return later.isName() ? std::max(version, later.getName().substr(1)) : version;
}

} // namespace

std::optional<Ledger> Ledger::of(Document& existing) {
  QPDF& pdf = existing.pdf;
  QPDFObjectHandle root = pdf.getRoot();
  QPDFObjectHandle tree = root.getKey("/Pages");
  Ledger ledger;
  if (pdf.isEncrypted() || pdf.anyWarnings() || !root.isIndirect() || !tree.isIndirect() ||
      !ledger.readEnd(existing)) {
    return std::nullopt;
  }
  ledger.m_version = versionOf(pdf);
  ledger.m_catalog.read(pdf);
  ledger.m_pages.read(tree, static_cast<int>(existing.pages.size()));
  ledger.m_destinations.read(pdf);
  ledger.m_outline.read(pdf);
  ledger.m_form.read(pdf);
  ledger.m_layers.read(pdf);
  ledger.m_labels.read(pdf);
  ledger.m_shared.sample(existing.pages);
  // What was looked at now may have been damaged where opening had not come.
  return pdf.anyWarnings() ? std::nullopt : std::optional(std::move(ledger));
}

bool Ledger::readEnd(Document& existing) {
  const DiskFile file = DiskFile::open(existing.path, DiskFile::Access::Read);
  const auto section = lastSection(file);
  if (!section || file.read(0, 5) != "%PDF-") {
    return false;
  }
  m_kind = file.read(*section, 4) == "xref" ? XrefKind::Table : XrefKind::Stream;
  QPDFObjectHandle trailer = existing.pdf.getTrailer();
  const auto table = wholeTable(existing.pdf);
  QPDFObjectHandle size = trailer.getKey("/Size");
  int highest = 0;
  for (const XrefEntry& entry : table) {
    highest = std::max(highest, entry.number);
  }
  if (trailer.hasKey("/XRefStm") || !size.isInteger() || size.getIntValue() <= highest ||
      size.getIntValue() > kHighestFirstNumber) {
    return false;
  }
  m_nextNumber = size.getIntValueAsInt();
  QPDFObjectHandle depth = trailer.getKey("/MelderSections");
  if (depth.isInteger() && depth.getIntValue() >= kMostSections) {
    m_chain.startWhole(table);
  } else {
    m_chain.startAt(*section, depth.isInteger() ? std::max(depth.getIntValueAsInt(), 0) : 0);
  }
  m_trailer = dictText(trailer);
  for (const char* key : {"/Size", "/Prev", "/Type", "/W", "/Index", "/Filter", "/Length",
                          "/DecodeParms", "/ID", "/MelderSections"}) {
    m_trailer.erase(key);
  }
  QPDFObjectHandle id = trailer.getKey("/ID");
  if (id.isArray() && id.getArrayNItems() == 2 && id.getArrayItem(0).isString()) {
    m_firstId = id.getArrayItem(0).getStringValue();
  }
  return true;
}

void Ledger::raiseVersion(QPDF& part) {
  const std::string version = versionOf(part);
  if (isVersion(version) && version > m_version) {
    m_version = version;
    m_catalog.set("/Version", '/' + version);
  }
}

void Ledger::writePages(Document& part, Transplant& transplant, Update& update,
                        const std::vector<QPDFObjGen>& numbers) {
  using Sharing = Transplant::Sharing;
  for (size_t i = 0; i < numbers.size(); ++i) {
    QPDFObjectHandle page = part.pages[i];
    DictText text;
    for (const char* key : {"/Resources", "/Contents"}) {
      if (page.hasKey(key)) {
        text[key] = transplant.text(page.getKey(key), Sharing::Allowed);
      }
    }
    // Article threads are not carried over, and a bead without its thread is a loose end.
    for (const char* key : {"/Resources", "/Contents", "/Parent", "/B"}) {
      page.removeKey(key);
    }
    text.merge(transplant.entries(page, Sharing::Forbidden));
    text["/Type"] = "/Page";
    text["/Parent"] = referenceTo(m_pages.append(numbers[i], update));
    update.put(numbers[i], written(text));
  }
}

DictText Ledger::trailer(uint64_t updateStart) const {
  const Digest digest =
      sha256(m_firstId + ' ' + std::to_string(updateStart) + ' ' + std::to_string(m_nextNumber));
  const std::string current(reinterpret_cast<const char*>(digest.data()), kIdBytes);
  DictText text = m_trailer;
  text["/ID"] =
      '[' + stringText(m_firstId.empty() ? current : m_firstId) + ' ' + stringText(current) + ']';
  return text;
}

void Ledger::append(Document& part, const DiskFile& file) {
  part.pdf.pushInheritedAttributesToPage();
  const int before = m_pages.count();
  Update update(file, m_kind, m_nextNumber);
  Transplant transplant(update, m_shared);
  std::vector<QPDFObjGen> numbers;
  for (const QPDFObjectHandle& page : part.pages) {
    numbers.push_back(update.reserve());
    transplant.pin(page.getObjGen(), numbers.back());
  }
  m_destinations.choose(part, transplant, before + 1);
  m_layers.append(part, transplant, update, m_catalog);
  m_form.append(part, transplant, update, m_catalog);
  writePages(part, transplant, update, numbers);
  m_pages.write(update);
  m_catalog.set("/Pages", referenceTo(m_pages.root()));
  m_destinations.write(transplant, update, m_catalog);
  m_outline.append(part, transplant, update, m_catalog);
  m_labels.append(part, before, update, m_catalog);
  if (part.rebuilt && transplant.dangling() > 0) {
    throw Failure(MELDER_DAMAGED, part.name + ": damaged: parts of its pages are missing");
  }
  raiseVersion(part.pdf);
  m_catalog.write(update);
  update.finish(trailer(update.start()), m_chain);
  m_nextNumber = update.nextNumber();
}

} // namespace melder
