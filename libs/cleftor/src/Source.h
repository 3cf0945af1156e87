#ifndef CLEFTOR_SOURCE_H
#define CLEFTOR_SOURCE_H

#include "FieldIndex.h"
#include "LayerIndex.h"
#include "NamedDestinations.h"
#include "ObjectCache.h"
#include "OutlineIndex.h"
#include "PageLabels.h"
#include "PageTable.h"
#include "ResourcePruner.h"

#include <qpdf/QPDF.hh>

#include <memory>
#include <string>

namespace cleftor {

/**
 * A source document, opened once and only read. What a range needs to know about the whole document
 * (bookmarks, names, fields, labels, layers) is gathered once, when a range first asks for it.
 */
class Source {
public:
  /** Throws Failure CLEFTOR_CANNOT_OPEN. Both texts are UTF-8. */
  Source(const std::string& path, const std::string& password);

  const std::string& path() const { return m_path; }
  const PageTable& pages() const { return *m_pages; }
  int32_t pageCount() const { return m_pages->count(); }

  /** CLEFTOR_FILE_... facts. */
  int32_t facts() const { return m_facts; }

  QPDFObjectHandle catalog() { return m_document->getRoot(); }
  QPDFObjectHandle trailer() { return m_document->getTrailer(); }
  QPDFObjectHandle object(QPDFObjGen object) { return m_document->getObject(object); }
  QPDFObjectHandle page(int32_t index) { return object(m_pages->object(index)); }

  /** "1.4" and the like. */
  std::string version() const;

  /** Whether an object stands for the document as a whole and so never belongs to a range. */
  bool isOfWholeDocument(QPDFObjGen object) const {
    return m_wholeDocument.count(object) != 0 || m_pages->isNode(object);
  }

  NamedDestinations& names();
  OutlineIndex& outline();
  PageLabels& labels();
  FieldIndex& fields();
  LayerIndex& layers();

  ObjectCache& cache() { return m_cache; }
  ResourcePruner& resources() { return m_resources; }

  /** Closes the file; nothing of the source can be read any more. */
  void letGoOfFile() { m_document->closeInputSource(); }

  /** Lets go of what the parser noted since the last call. */
  void forgetWarnings() { m_document->getWarnings(); }

private:
  void open(const std::string& password);
  bool openWith(const std::string& password);
  void gatherFacts();
  void gatherWholeDocument();

  std::string m_path;
  std::shared_ptr<QPDF> m_document;
  std::unique_ptr<PageTable> m_pages;
  ObjGenSet m_wholeDocument;
  int32_t m_facts = 0;

  std::unique_ptr<NamedDestinations> m_names;
  std::unique_ptr<OutlineIndex> m_outline;
  std::unique_ptr<PageLabels> m_labels;
  std::unique_ptr<FieldIndex> m_fields;
  std::unique_ptr<LayerIndex> m_layers;
  ObjectCache m_cache;
  ResourcePruner m_resources;
};

} // namespace cleftor

#endif
