#pragma once

#include "FormBuilder.h"
#include "LinkRules.h"
#include "StructureBuilder.h"

#include <map>
#include <string>
#include <vector>

namespace cleftor {

/// Settings of an output.
struct RangeSettings {
  bool keepBookmarks = false;
  bool digests = false; ///< whether the digest of what was written is asked for
};

/// Writes ranges of a source, in their order, as one document.
class RangeBuilder {
public:
  /// file is not kept by the builder; whoever made it does that.
  RangeBuilder(Source& source, std::vector<pages::PageRange> ranges, const RangeSettings& settings,
               common::AsideFile& file);

  void write();

private:
  using Entries = std::map<std::string, QPDFObjectHandle>;

  void placePages();
  void placeAnnotations(int32_t page);
  void writePages();
  void writePage(int32_t page, int number);
  Fragment pageBody(int32_t page, QPDFObjectHandle dictionary);
  void addInherited(int32_t page, Entries& entries);
  void writeResources(Fragment& out, int32_t page, Entries& entries);
  void writeRotation(Fragment& out, Entries& entries);
  void writeAnnotationList(Fragment& out, QPDFObjectHandle annotations);
  void writeAnnotations(QPDFObjectHandle annotations);
  Fragment annotationBody(QPDFObjectHandle annotation);
  void dropStrayRelations(Entries& entries) const;

  Source& m_source;
  std::vector<pages::PageRange> m_ranges;
  std::vector<int32_t> m_pages; ///< indexes in the source, in the order of the output
  RangeSettings m_settings;
  DocumentWriter m_writer;
  ObjectCopier m_copier;
  LinkRules m_links;
  FormBuilder m_form;
  StructureBuilder m_structure;
  std::vector<int> m_pageNumbers; ///< as m_pages
  pages::ObjGenSet m_annotationsWritten;
  int m_treeNumber = 0;
};

} // namespace cleftor
