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

  const std::string& path() const { return path_; }
  const PageTable& pages() const { return *pages_; }
  int32_t pageCount() const { return pages_->count(); }

  /** CLEFTOR_FILE_... facts. */
  int32_t facts() const { return facts_; }

  QPDFObjectHandle catalog() { return document_->getRoot(); }
  QPDFObjectHandle trailer() { return document_->getTrailer(); }
  QPDFObjectHandle object(QPDFObjGen object) { return document_->getObject(object); }
  QPDFObjectHandle page(int32_t index) { return object(pages_->object(index)); }

  /** "1.4" and the like. */
  std::string version() const;

  /** Whether an object stands for the document as a whole and so never belongs to a range. */
  bool isOfWholeDocument(QPDFObjGen object) const {
    return wholeDocument_.count(object) != 0 || pages_->isNode(object);
  }

  NamedDestinations& names();
  OutlineIndex& outline();
  PageLabels& labels();
  FieldIndex& fields();
  LayerIndex& layers();

  ObjectCache& cache() { return cache_; }
  ResourcePruner& resources() { return resources_; }

  /** Closes the file; nothing of the source can be read any more. */
  void letGoOfFile() { document_->closeInputSource(); }

  /** Lets go of what the parser noted since the last call. */
  void forgetWarnings() { document_->getWarnings(); }

private:
  void open(const std::string& password);
  bool openWith(const std::string& password);
  void gatherFacts();
  void gatherWholeDocument();

  std::string path_;
  std::shared_ptr<QPDF> document_;
  std::unique_ptr<PageTable> pages_;
  ObjGenSet wholeDocument_;
  int32_t facts_ = 0;

  std::unique_ptr<NamedDestinations> names_;
  std::unique_ptr<OutlineIndex> outline_;
  std::unique_ptr<PageLabels> labels_;
  std::unique_ptr<FieldIndex> fields_;
  std::unique_ptr<LayerIndex> layers_;
  ObjectCache cache_;
  ResourcePruner resources_;
};

} // namespace cleftor

#endif
