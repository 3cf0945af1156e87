#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <string>
#include <string_view>
#include <unordered_set>

namespace cleftor {

/// The names that stand in content streams. Whatever looks like a name counts, inside strings,
/// inline images and comments too: a name too many keeps something that is not needed, a name too
/// few would lose something that is.
class ContentNames {
public:
  /// Takes the names of decoded content.
  void addText(std::string_view content);

  /// Takes the names of a stream or an array of streams; false when one of them cannot be decoded.
  bool addContents(QPDFObjectHandle contents);

  void addName(const std::string& name) { m_names.insert(name); }

  /// name with its leading slash.
  bool contains(const std::string& name) const { return m_names.count(name) != 0; }

  size_t size() const { return m_names.size(); }

private:
  bool addStream(QPDFObjectHandle stream);

  std::unordered_set<std::string> m_names;
  std::string m_last;
};

} // namespace cleftor
