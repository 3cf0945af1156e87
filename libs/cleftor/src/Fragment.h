#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cleftor {

/// An object of an output as text in which the references to source objects are still open. The
/// text is the same for every output, the numbers are not: an object that many outputs share is
/// turned into text once.
class Fragment {
public:
  struct Reference {
    size_t at; ///< offset in bytes() before which the reference belongs
    QPDFObjGen object;
  };

  const std::string& bytes() const { return m_bytes; }
  const std::vector<Reference>& references() const { return m_references; }

  void text(std::string_view text) { m_bytes.append(text); }
  void integer(long long value);

  /// A name as a key or value; name begins with its slash and is not escaped.
  void name(const std::string& name);

  /// A reference to a source object, which the output resolves.
  void reference(QPDFObjGen object);

  /// A reference to an object of the output itself.
  void number(int object);

  /// All of another fragment.
  void append(const Fragment& other);

  /// A source value as it stands: an indirect one as a reference, a direct one with all it holds.
  void value(QPDFObjectHandle value);

  /// A source value written out in place, even when it is an object of its own; no stream's data.
  void resolved(QPDFObjectHandle value);

  /// "/Key value" for each entry of map; entries that are null stay out.
  void entries(std::map<std::string, QPDFObjectHandle>& map);

  /// The same for those of a dictionary's entries that are named.
  void entries(QPDFObjectHandle dictionary, std::span<const char* const> keys);

  /// "/Key value"
  void entry(const std::string& key, QPDFObjectHandle value);

  /// Puts a blank where two tokens would run together.
  void separate();

private:
  std::string m_bytes;
  std::vector<Reference> m_references;
};

} // namespace cleftor
