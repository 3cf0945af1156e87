// One open document: its pages as they really are, its protection, its boxes.
#pragma once

#include "Geometry.h"
#include "MuContext.h"
#include "PdfObject.h"
#include "common/FileIdentity.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace glyphrun {

/// Where the pages of a file are: object numbers of the page tree. Good for every document of the
/// same file, each of which would else walk the tree anew. Empty when a file has no such list
/// (pages that are no objects of their own, a damaged file).
struct PageList {
  struct Page {
    int number;
    std::uint32_t node;
  };
  struct Node {
    int number;
    std::int32_t parent;
  };
  std::vector<Page> pages;
  std::vector<Node> nodes;
  std::optional<common::FileIdentity> file;
};

/// What a page says of itself, its own or by inheritance.
struct PageFrame {
  Rect crop;        ///< visible part, in the page's own coordinates
  int rotation = 0; ///< clockwise: 0, 90, 180 or 270
  double width = 0; ///< as shown, points
  double height = 0;
  Matrix toShown; ///< to points from the top left of the shown page
  PdfObject resources;
};

/// A document in a context of its own. One thread at a time.
class PdfFile {
public:
  /// Throws Failure. Pages that are known from another document of the same file are not searched
  /// for again. `stop`: see MuContext.
  static std::unique_ptr<PdfFile> open(const std::u16string& path, const std::u16string& password,
                                       const PageList& known = {},
                                       const std::atomic<bool>* stop = nullptr);
  ~PdfFile();
  PdfFile(const PdfFile&) = delete;
  PdfFile& operator=(const PdfFile&) = delete;

  MuContext& mu() const { return *m_mu; }
  pdf_document* document() const { return m_document; }
  PdfObject catalog() const;

  /// Pages that exist, whatever the file claims.
  std::int32_t pageCount() const { return static_cast<std::int32_t>(m_pages.size()); }
  /// `index` from 0.
  PdfObject page(std::int32_t index) const;
  PageFrame frameOf(std::int32_t index) const;
  /// Index of the page with an object number, or -1.
  std::int32_t pageWithNumber(int objectNumber) const;

  /// See PageList; `file` is left to the caller.
  PageList pageList() const;

  /// GLYPHRUN_FILE_...
  std::int32_t facts() const;
  /// Lets the document forget objects that were read, to stay small over many pages.
  void forgetObjects();
  /// The page as MuPDF draws it, `index` from 0; null on failure. The caller drops it with
  /// fz_drop_page(), before the document goes.
  pdf_page* loadForDrawing(std::int32_t index);

private:
  struct PageEntry {
    pdf_obj* object; ///< kept
    std::uint32_t node;
  };
  struct Node {
    pdf_obj* object; ///< kept
    std::int32_t parent;
  };

  explicit PdfFile(const std::atomic<bool>* stop) : m_mu(MuContext::create(stop)) {}
  void openDocument(const std::string& path);
  void authenticate(const std::u16string& password);
  bool hasPlainPages() const;
  void readPages();
  void takePages(const PageList& list);
  bool fillPageTables();
  PdfObject trailer() const;
  PdfObject inherited(const PageEntry& entry, const char* key) const;

  std::unique_ptr<MuContext> m_mu;
  fz_stream* m_stream = nullptr;
  pdf_document* m_document = nullptr;
  std::vector<PageEntry> m_pages;
  std::vector<Node> m_nodes;
  mutable std::unordered_map<int, std::int32_t> m_pagesByNumber;
  bool m_treeLoaded = false;
};

} // namespace glyphrun
