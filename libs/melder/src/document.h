#ifndef MELDER_DOCUMENT_H
#define MELDER_DOCUMENT_H

#include "dict_text.h"

#include <qpdf/QPDF.hh>

#include <string>
#include <vector>

namespace melder {

class Update;

/** A parsed file. Nothing is printed; qpdf repairs what it can and the findings are kept here. */
struct Document {
  /**
   * Opens with the empty password. Throws Failure or QPDFExc when the file cannot be read, is cut
   * off at its end, or holds fewer pages than it says.
   */
  explicit Document(const std::string& file) : Document(file, file) {}
  /** `shownAs` is what messages call the file. */
  Document(const std::string& file, const std::string& shownAs);

  std::string path;
  std::string name; ///< for messages
  QPDF pdf;
  std::vector<QPDFObjectHandle> pages;
  bool rebuilt = false; ///< the cross-reference table was of no use
};

/** The catalog of the receiving file; written again only when an append changed it. */
class Catalog {
public:
  void read(QPDF& pdf);
  void set(const std::string& key, const std::string& value);
  [[nodiscard]] const std::string& get(const std::string& key) const;
  [[nodiscard]] QPDFObjGen id() const { return m_id; }
  void write(Update& update);

private:
  QPDFObjGen m_id;
  DictText m_entries;
  bool m_changed = false;
};

} // namespace melder

#endif
