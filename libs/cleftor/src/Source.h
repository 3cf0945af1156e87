#pragma once

#include "Deflater.h"
#include "FieldIndex.h"
#include "LayerIndex.h"
#include "ObjectCache.h"
#include "ResourcePruner.h"
#include "StructureIndex.h"
#include "pages/Claims.h"
#include "pages/NamedDestinations.h"
#include "pages/OutlineIndex.h"
#include "pages/PageLabels.h"
#include "pages/PageTable.h"
#include "pages/SourceInput.h"

#include <qpdf/QPDF.hh>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cleftor {

/// A source document, opened once and only read. What a range needs to know about the whole
/// document (bookmarks, names, fields, labels, layers) is gathered once, when a range first asks
/// for it.
class Source {
public:
  /// Tries the passwords (bytes) one after the other, then the empty one. Throws Failure
  /// CLEFTOR_CANNOT_OPEN. `stop`: see SourceInput.
  /// `pages`: of the same file, when they are known.
  Source(const std::string& path, const std::vector<std::string>& passwords,
         const std::atomic<bool>* stop = nullptr,
         std::shared_ptr<const pages::PageTable> pages = nullptr);

  /// Of a file, for all sources of it.
  struct SharedStructure {
    std::once_flag once;
    std::unique_ptr<const StructureIndex> index;
  };

  const std::string& path() const { return m_path; }
  const pages::PageTable& pages() const { return *m_pages; }
  int32_t pageCount() const { return m_pages->count(); }

  /// CLEFTOR_FILE_... facts.
  int32_t facts() const { return m_facts; }

  /// Whether a stream stays encrypted, since the password is not known.
  bool isLocked(QPDFObjectHandle stream) const;

  QPDFObjectHandle catalog() { return m_document->getRoot(); }
  QPDFObjectHandle trailer() { return m_document->getTrailer(); }
  QPDFObjectHandle object(QPDFObjGen object);
  QPDFObjectHandle page(int32_t index);
  QPDFObjectHandle inherited(int32_t page, const std::string& key) {
    return m_pages->inherited(*m_document, page, key);
  }

  /// Before a range, when nothing that was read of the source is held any more: gives the memory
  /// back that earlier ranges took. Throws Failure when the file cannot be read any more.
  void makeRoom();

  /// The pages first..last (from 0) are written. Of a long document they leave the memory with what
  /// they draw; who asks for them again gets them, since the file is then read anew.
  void letGoOfPages(int32_t first, int32_t last);

  /// "1.4" and the like.
  std::string version() const;

  /// Of a source that keeps its objects packed: so do its outputs, unless it claims the part of
  /// ISO 19005 that forbids it. Null for any other.
  Deflater* deflater() { return m_deflater.get(); }

  /// Whether an object stands for the document as a whole and so never belongs to a range.
  bool isOfWholeDocument(QPDFObjGen object) const {
    return m_wholeDocument.count(object) != 0 || m_pages->isNode(object);
  }

  const pages::Claims& claims() const { return m_claims; }
  /// Null for a document that is not tagged, or not as it should be. Read by the first who asks.
  const StructureIndex* structure();
  pages::NamedDestinations& names();
  pages::OutlineIndex& outline();
  pages::PageLabels& labels();
  FieldIndex& fields();
  LayerIndex& layers();

  ObjectCache& cache() { return m_cache; }
  ResourcePruner& resources() { return m_resources; }

  /// Whether the file is another one than when it was opened, or became shorter while it was read.
  bool isChanged() const;

  /// How another thread gets a source of its own of the same file.
  struct Ticket {
    std::string path;
    std::string password;
    common::FileIdentity identity;
    std::shared_ptr<const pages::PageTable> pages; ///< null: to be found once more
    int32_t pageCount = 0;
    std::shared_ptr<SharedStructure> structure = {};
  };
  Ticket ticket() const;
  /// Null when the file cannot be opened, is not the same any more, or opening it was stopped.
  static std::unique_ptr<Source> of(const Ticket& ticket, const std::atomic<bool>& stop);

  /// Closes the file; nothing of the source can be read any more.
  void letGoOfFile();

  /// Lets go of what the parser noted since the last call.
  void forgetWarnings() { m_document->getWarnings(); }

private:
  /// A document of no more pages stays in memory: 4 KB or so for a page.
  static constexpr int32_t residentPages = 16'384;
  /// What was let go of leaves a trace in memory, 0.5 KB or so for a page, and only reading the
  /// file anew takes it away. That costs time that grows with the document: so it happens once for
  /// so many pages, or for such a part of them.
  static constexpr int32_t pagesARenewal = 65'536;
  static constexpr int32_t mostRenewals = 8;
  /// So often the file is read anew for the sake of pages that are asked for again.
  static constexpr int mostReturns = 4;

  bool mayLetGo() const;
  void letGoOf(QPDFObjGen object);
  void letGoOfPage(QPDFObjGen object);
  bool lacksPartOf(QPDFObjectHandle page) const;
  void renew();
  void bringBack();
  void forgetEarlier();
  void open(const std::vector<std::string>& passwords);
  bool openWith(const std::string& password);
  bool openWithoutKey();
  void read(QPDF& document) const;
  void gatherFacts();
  void gatherWholeDocument();

  std::string m_path;
  const std::atomic<bool>* m_stop;
  std::string m_password;       ///< the one that opened it
  bool m_hasPlainPages = false; ///< attachments alone are encrypted
  bool m_hasNoKey = false;      ///< opened without any: its attachments stay encrypted
  std::shared_ptr<pages::SourceInput> m_input;
  std::shared_ptr<QPDF> m_document;
  /// What the range that is being written has read hangs on them, and what is known of the whole.
  std::vector<std::shared_ptr<QPDF>> m_earlierDocuments;
  std::shared_ptr<const pages::PageTable> m_pages;
  pages::ObjGenSet m_gone; ///< objects of m_document that were let go of
  int32_t m_pagesGone = 0; ///< of it
  int m_returns = 0;
  pages::ObjGenSet m_wholeDocument;
  int32_t m_facts = 0;
  pages::Claims m_claims;

  std::shared_ptr<SharedStructure> m_structure = std::make_shared<SharedStructure>();
  std::unique_ptr<pages::NamedDestinations> m_names;
  std::unique_ptr<pages::OutlineIndex> m_outline;
  std::unique_ptr<pages::PageLabels> m_labels;
  std::unique_ptr<FieldIndex> m_fields;
  std::unique_ptr<LayerIndex> m_layers;
  std::unique_ptr<Deflater> m_deflater;
  ObjectCache m_cache;
  ResourcePruner m_resources;
};

} // namespace cleftor
