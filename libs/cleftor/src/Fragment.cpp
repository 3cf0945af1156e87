#include "Fragment.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace cleftor {

namespace {

/// Whether a character may stand in a name as it is.
bool isPlain(char ch) {
  return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') ||
         ch == '.' || ch == '-' || ch == '_' || ch == '+' || ch == ':' || ch == '*' || ch == ',';
}

bool isDelimiter(char ch) {
  return ch == '<' || ch == '>' || ch == '[' || ch == ']' || ch == ')' || ch == ' ';
}

} // namespace

void Fragment::separate() {
  const bool afterReference = !m_references.empty() && m_references.back().at == m_bytes.size();
  if (afterReference || (!m_bytes.empty() && !isDelimiter(m_bytes.back()))) {
    m_bytes.push_back(' ');
  }
}

void Fragment::integer(long long value) {
  separate();
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  m_bytes.append(digits.data(), end.ptr);
}

void Fragment::name(const std::string& name) {
  if (name.size() > 1 && std::all_of(name.begin() + 1, name.end(), isPlain)) {
    m_bytes.append(name);
  } else {
    m_bytes.append(QPDFObjectHandle::newName(name).unparse());
  }
}

void Fragment::reference(QPDFObjGen object) {
  separate();
  m_references.push_back({m_bytes.size(), object});
}

void Fragment::number(int object) {
  integer(object);
  m_bytes.append(" 0 R");
}

void Fragment::append(const Fragment& other) {
  if (!m_references.empty() && m_references.back().at == m_bytes.size()) {
    m_bytes.push_back(' ');
  }
  const size_t base = m_bytes.size();
  m_bytes.append(other.m_bytes);
  for (const Reference& reference : other.m_references) {
    m_references.push_back({base + reference.at, reference.object});
  }
}

void Fragment::value(QPDFObjectHandle value) {
  if (value.isIndirect()) {
    reference(value.getObjGen());
  } else {
    resolved(value);
  }
}

void Fragment::resolved(QPDFObjectHandle value) {
  switch (value.getTypeCode()) {
  case ot_integer:
    integer(value.getIntValue());
    break;
  case ot_name:
    name(value.getName());
    break;
  case ot_array: {
    m_bytes.push_back('[');
    const int count = value.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      this->value(value.getArrayItem(i));
    }
    m_bytes.push_back(']');
    break;
  }
  case ot_dictionary: {
    m_bytes.append("<<");
    auto map = value.getDictAsMap();
    entries(map);
    m_bytes.append(">>");
    break;
  }
  case ot_boolean:
  case ot_real:
  case ot_string:
    separate();
    m_bytes.append(value.unparseResolved());
    break;
  default:
    separate();
    m_bytes.append("null");
  }
}

void Fragment::entries(std::map<std::string, QPDFObjectHandle>& map) {
  for (auto& [key, value] : map) {
    if (!value.isNull()) {
      entry(key, value);
    }
  }
}

void Fragment::entries(QPDFObjectHandle dictionary, std::span<const char* const> keys) {
  for (const char* key : keys) {
    if (QPDFObjectHandle value = dictionary.getKey(key); !value.isNull()) {
      entry(key, value);
    }
  }
}

void Fragment::entry(const std::string& key, QPDFObjectHandle value) {
  name(key);
  this->value(value);
}

} // namespace cleftor
