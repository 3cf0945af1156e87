#include "Claims.h"

#include "Entries.h"
#include "StringPipe.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <string_view>
#include <vector>

namespace pages {

namespace {

/// Metadata takes some kilobytes, with a picture in it some hundred; and nobody claims as much.
constexpr size_t mostMetadata = size_t{4} * 1024 * 1024;
constexpr int mostProperties = 100;

constexpr const char* archival = "http://www.aiim.org/pdfa/ns/id/";
constexpr const char* accessible = "http://www.aiim.org/pdfua/ns/id/";
constexpr std::array beyondPages = {
    "http://www.npes.org/pdfvt/ns/id/",
    "urn:ferd:pdfa:CrossIndustryDocument:invoice:1p0#",
    "urn:zugferd:pdfa:CrossIndustryDocument:invoice:2p0#",
    "urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#",
};

bool claimsAnything(const std::string& text) {
  const auto tells = [&text](const char* space) { return text.find(space) != std::string::npos; };
  return tells(archival) || tells(accessible) ||
         std::any_of(beyondPages.begin(), beyondPages.end(), tells);
}

constexpr std::string_view blanks = " \t\r\n";

bool isBlank(char ch) {
  return blanks.find(ch) != std::string_view::npos;
}

/// A property as RDF writes it: name="value" in a tag, or <name>value</name>. Offsets in the text.
struct Property {
  std::string name; ///< without prefix
  size_t begin;
  size_t end;
  size_t value;
  size_t valueEnd;
};

/// The prefixes that stand for a namespace, each with its colon.
std::vector<std::string> prefixesOf(const std::string& text, std::string_view space) {
  std::vector<std::string> prefixes;
  for (size_t at = text.find(space); at != std::string::npos; at = text.find(space, at + 1)) {
    const size_t after = at + space.size();
    if (at == 0 || after >= text.size() || text[at - 1] != text[after]) {
      continue; // told of, not bound
    }
    const size_t equals = text.find_last_not_of(blanks, at - 2);
    const size_t end = equals == std::string::npos || text[equals] != '=' || equals == 0
                           ? std::string::npos
                           : text.find_last_not_of(blanks, equals - 1);
    const size_t colon = end == std::string::npos ? end : text.find_last_of(": \t\r\n", end);
    if (colon == std::string::npos || colon < 5 || text.compare(colon - 5, 6, "xmlns:") != 0) {
      continue;
    }
    const std::string prefix = text.substr(colon + 1, end - colon) + ':';
    if (std::find(prefixes.begin(), prefixes.end(), prefix) == prefixes.end()) {
      prefixes.push_back(prefix);
    }
  }
  return prefixes;
}

/// at: of the name; nameEnd: behind it.
std::optional<Property> attributeAt(const std::string& text, size_t at, size_t nameEnd) {
  const size_t equals = text.find_first_not_of(blanks, nameEnd);
  const size_t quote = equals == std::string::npos || text[equals] != '='
                           ? std::string::npos
                           : text.find_first_not_of(blanks, equals + 1);
  if (quote == std::string::npos || (text[quote] != '"' && text[quote] != '\'')) {
    return std::nullopt;
  }
  const size_t end = text.find(text[quote], quote + 1);
  if (end == std::string::npos) {
    return std::nullopt;
  }
  return Property{{}, at - 1, end + 1, quote + 1, end};
}

std::optional<Property> elementAt(const std::string& text, size_t at, size_t nameEnd) {
  const size_t opened = text.find('>', nameEnd);
  if (opened == std::string::npos) {
    return std::nullopt;
  }
  if (text[opened - 1] == '/') {
    return Property{{}, at - 1, opened + 1, opened, opened};
  }
  const size_t closing = text.find("</" + text.substr(at, nameEnd - at), opened);
  const size_t end = closing == std::string::npos ? closing : text.find('>', closing);
  if (end == std::string::npos) {
    return std::nullopt;
  }
  return Property{{}, at - 1, end + 1, opened + 1, closing};
}

std::optional<Property> firstProperty(const std::string& text, std::string_view space,
                                      std::string_view wanted = {}) {
  for (const std::string& prefix : prefixesOf(text, space)) {
    for (size_t at = text.find(prefix, 1); at != std::string::npos;
         at = text.find(prefix, at + 1)) {
      const size_t nameEnd = std::min(text.find_first_of(" \t\r\n=/>", at), text.size());
      const std::string name = text.substr(at + prefix.size(), nameEnd - at - prefix.size());
      const char before = text[at - 1];
      if ((before != '<' && !isBlank(before)) || (!wanted.empty() && name != wanted)) {
        continue;
      }
      auto found = before == '<' ? elementAt(text, at, nameEnd) : attributeAt(text, at, nameEnd);
      if (found) {
        found->name = name;
        return found;
      }
    }
  }
  return std::nullopt;
}

std::string valueOf(const std::string& text, const char* name) {
  const auto property = firstProperty(text, archival, name);
  std::string value =
      property ? text.substr(property->value, property->valueEnd - property->value) : std::string();
  std::erase_if(value, isBlank);
  return value;
}

/// Of the levels that promise more than the next one and nothing else, the highest first.
std::optional<size_t> rankOf(const std::string& level) {
  constexpr std::string_view levels = "AUB";
  const size_t rank = level.size() == 1 ? levels.find(level) : std::string_view::npos;
  return rank == std::string_view::npos ? std::nullopt : std::optional(rank);
}

} // namespace

Claims::Claims(QPDFObjectHandle catalog) {
  QPDFObjectHandle stream = catalog.getKey("/Metadata");
  if (!stream.isStream()) {
    return;
  }
  try {
    StringPipe target(m_text, mostMetadata);
    bool isDecoded = false;
    m_isUnreadable = !stream.pipeStreamData(&target, &isDecoded, 0, qpdf_dl_generalized, true) ||
                     !isDecoded || m_text.find('\0') != std::string::npos;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    m_isUnreadable = true;
  }
  if (m_isUnreadable || !claimsAnything(m_text)) {
    m_text.clear();
  }
}

std::string Claims::archivalPart() const {
  return valueOf(m_text, "part");
}

std::string Claims::archivalLevel() const {
  std::string level = valueOf(m_text, "conformance");
  for (char& ch : level) {
    ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
  }
  return level;
}

void Claims::dropTagged() {
  lowerTo(archivalPart() == "1" ? "B" : "U");
}

void Claims::limitTo(const Claims& other) {
  const std::string level = archivalLevel();
  const std::string others = other.archivalLevel();
  if (archivalPart() != other.archivalPart() ||
      (level != others && !(rankOf(level) && rankOf(others)))) {
    dropArchival();
  } else {
    lowerTo(others);
  }
}

void Claims::lowerTo(const std::string& level) {
  m_isChanged = m_isChanged || m_isUnreadable;
  if (const auto has = rankOf(archivalLevel()); has && rankOf(level) && *has < *rankOf(level)) {
    const auto property = firstProperty(m_text, archival, "conformance");
    m_text.replace(property->value, property->valueEnd - property->value, level);
    m_isChanged = true;
  }
}

void Claims::dropArchival() {
  dropAll(archival);
}

void Claims::dropAccessible() {
  dropAll(accessible);
}

void Claims::dropBeyondPages() {
  if (archivalLevel() == "F") { // there are files attached
    dropArchival();
  }
  for (const char* space : beyondPages) {
    dropAll(space);
  }
}

void Claims::dropAll(const char* space) {
  m_isChanged = m_isChanged || m_isUnreadable;
  for (int count = 0; const auto property = firstProperty(m_text, space); ++count) {
    m_isChanged = true;
    m_text.erase(property->begin, property->end - property->begin);
    if (count == mostProperties) {
      m_text.clear();
    }
  }
}

} // namespace pages
