// Claims: the standards that a document says it keeps to.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <string>

namespace pages {

/// What the metadata of a document (XMP, ISO 16684-1) says of the standards that it keeps to, and
/// the same metadata with less said. Who looks for such a claim believes it: one that is no longer
/// true has to go, and only it.
class Claims {
public:
  /// Claims nothing.
  Claims() = default;
  /// Reads /Metadata of a catalog.
  explicit Claims(QPDFObjectHandle catalog);

  /// Part of ISO 19005 (PDF/A), "1" to "4"; empty: no such claim.
  [[nodiscard]] std::string archivalPart() const;

  /// Claims no level that needs tags; what such a level holds besides stays claimed.
  void dropTagged();
  /// Claims no more of ISO 19005 than the other does, too.
  void limitTo(const Claims& other);
  /// Makes no claim of ISO 19005 at all.
  void dropArchival();
  /// Makes no claim of accessibility (ISO 14289): it needs tags, and the first heading first.
  void dropAccessible();
  /// Makes no claim that rests on what is not on pages: files attached, among them an invoice to be
  /// read by programs, and the parts of variable printing (ISO 16612).
  void dropBeyondPages();

  /// Whether the metadata is no longer that of the source.
  [[nodiscard]] bool isChanged() const { return m_isChanged; }
  /// The metadata, to be stored unfiltered; empty where none is left: what cannot be read cannot
  /// be trusted to claim nothing.
  [[nodiscard]] const std::string& text() const { return m_text; }

private:
  /// "A" (tagged), "U" (Unicode), "B" (looks), other letters for part 4, or empty.
  std::string archivalLevel() const;
  void lowerTo(const std::string& level);
  void dropAll(const char* space);

  std::string m_text;
  bool m_isUnreadable = false; ///< there is metadata, and it may claim anything
  bool m_isChanged = false;
};

} // namespace pages
