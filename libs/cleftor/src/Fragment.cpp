#include "Fragment.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace cleftor {

namespace {

/** Whether a character may stand in a name as it is. */
bool isPlain(char ch) {
  return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') ||
         ch == '.' || ch == '-' || ch == '_' || ch == '+' || ch == ':' || ch == '*' || ch == ',';
}

bool isDelimiter(char ch) {
  return ch == '<' || ch == '>' || ch == '[' || ch == ']' || ch == ')' || ch == ' ';
}

} // namespace

void Fragment::separate() {
  const bool afterReference = !references_.empty() && references_.back().at == bytes_.size();
  if (afterReference || (!bytes_.empty() && !isDelimiter(bytes_.back()))) {
    bytes_.push_back(' ');
  }
}

void Fragment::integer(long long value) {
  separate();
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
  bytes_.append(digits.data(), end.ptr);
}

void Fragment::name(const std::string& name) {
  if (name.size() > 1 && std::all_of(name.begin() + 1, name.end(), isPlain)) {
    bytes_.append(name);
  } else {
    bytes_.append(QPDFObjectHandle::newName(name).unparse());
  }
}

void Fragment::reference(QPDFObjGen object) {
  separate();
  references_.push_back({bytes_.size(), object});
}

void Fragment::number(int object) {
  integer(object);
  bytes_.append(" 0 R");
}

void Fragment::append(const Fragment& other) {
  if (!references_.empty() && references_.back().at == bytes_.size()) {
    bytes_.push_back(' ');
  }
  const size_t base = bytes_.size();
  bytes_.append(other.bytes_);
  for (const Reference& reference : other.references_) {
    references_.push_back({base + reference.at, reference.object});
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
    bytes_.push_back('[');
    const int count = value.getArrayNItems();
    for (int i = 0; i < count; ++i) {
      this->value(value.getArrayItem(i));
    }
    bytes_.push_back(']');
    break;
  }
  case ot_dictionary: {
    bytes_.append("<<");
    auto map = value.getDictAsMap();
    entries(map);
    bytes_.append(">>");
    break;
  }
  case ot_boolean:
  case ot_real:
  case ot_string:
    separate();
    bytes_.append(value.unparseResolved());
    break;
  default:
    separate();
    bytes_.append("null");
  }
}

void Fragment::entries(std::map<std::string, QPDFObjectHandle>& map) {
  for (auto& [key, value] : map) {
    if (!value.isNull()) {
      entry(key, value);
    }
  }
}

void Fragment::entry(const std::string& key, QPDFObjectHandle value) {
  name(key);
  this->value(value);
}

} // namespace cleftor
