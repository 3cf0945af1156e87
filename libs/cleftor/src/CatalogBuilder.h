#pragma once

#include "FormBuilder.h"
#include "LinkRules.h"
#include "StructureBuilder.h"

#include <string>

namespace cleftor {

/// What an output says as a document: information, labels, bookmarks, names, form, tags, layers.
/// Files that are attached to the source as a whole stay behind; scripts of the whole document come
/// along with form fields, whose own scripts call them.
class CatalogBuilder {
public:
  CatalogBuilder(Source& source, ObjectCopier& copier, LinkRules& links, FormBuilder& form,
                 StructureBuilder& structure, DocumentWriter& writer,
                 const std::vector<pages::PageRange>& ranges)
      : m_source(source), m_copier(copier), m_links(links), m_form(form), m_structure(structure),
        m_writer(writer), m_ranges(ranges) {}

  /// Number of the document information, 0 when the source has none.
  int writeInfo();

  /// Writes the catalog and everything that only it refers to; the pages are written before.
  void writeCatalog(int number, int pageTree, bool keepBookmarks);

  /// 16 bytes, the same whenever the same pages of the same source is written.
  std::string identifier();

private:
  bool hasLongArrays() const;
  bool isWholeSource() const;
  /// Whether the output is tagged.
  bool addStructure(Fragment& out);
  void addMetadata(Fragment& out, bool isTagged);
  void addLabels(Fragment& out);
  void addViewerPreferences(Fragment& out);
  void addNames(Fragment& out);
  void addForm(Fragment& out);
  void addOpenAction(Fragment& out);
  void addPageMode(Fragment& out, bool hasOutline);

  Source& m_source;
  ObjectCopier& m_copier;
  LinkRules& m_links;
  FormBuilder& m_form;
  StructureBuilder& m_structure;
  DocumentWriter& m_writer;
  const std::vector<pages::PageRange>& m_ranges; ///< in the order of the output
};

} // namespace cleftor
