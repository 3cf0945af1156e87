#include "ContentNames.h"

#include "StreamPipes.h"

#include <cstring>

namespace cleftor {

namespace {

bool endsName(char ch) {
  switch (ch) {
  case '\0':
  case '\t':
  case '\n':
  case '\f':
  case '\r':
  case ' ':
  case '(':
  case ')':
  case '<':
  case '>':
  case '[':
  case ']':
  case '{':
  case '}':
  case '/':
  case '%':
    return true;
  default:
    return false;
  }
}

int hexValue(char ch) {
  if (ch >= '0' && ch <= '9') {
    return ch - '0';
  }
  const char lower = static_cast<char>(ch | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Resolves "#41" escapes, so that both spellings of a name are one.
std::string plainName(std::string_view name) {
  std::string out;
  for (size_t i = 0; i < name.size(); ++i) {
    const int high = name[i] == '#' && i + 2 < name.size() ? hexValue(name[i + 1]) : -1;
    const int low = high >= 0 ? hexValue(name[i + 2]) : -1;
    if (low >= 0) {
      out.push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      out.push_back(name[i]);
    }
  }
  return out;
}

} // namespace

void ContentNames::addText(std::string_view content) {
  const char* at = content.data();
  const char* const end = at + content.size();
  while (at < end) {
    at = static_cast<const char*>(std::memchr(at, '/', static_cast<size_t>(end - at)));
    if (at == nullptr) {
      return;
    }
    const char* stop = at + 1;
    while (stop < end && !endsName(*stop)) {
      ++stop;
    }
    const std::string_view name(at, static_cast<size_t>(stop - at));
    // Pages select the same few fonts over and over.
    if (name != m_last) {
      m_last = name;
      m_names.insert(name.find('#') == std::string_view::npos ? m_last : plainName(name));
    }
    at = stop;
  }
}

bool ContentNames::addStream(QPDFObjectHandle stream) {
  if (!stream.isStream()) {
    return true;
  }
  std::string content;
  if (!decodeContent(stream, content)) {
    return false;
  }
  addText(content);
  return true;
}

bool ContentNames::addContents(QPDFObjectHandle contents) {
  if (!contents.isArray()) {
    return addStream(contents);
  }
  const int count = contents.getArrayNItems();
  for (int i = 0; i < count; ++i) {
    if (!addStream(contents.getArrayItem(i))) {
      return false;
    }
  }
  return true;
}

} // namespace cleftor
