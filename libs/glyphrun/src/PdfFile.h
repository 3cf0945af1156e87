// One open document: its pages as they really are, its protection, its boxes.
#pragma once

#include "Geometry.h"
#include "MuContext.h"
#include "PdfObject.h"
#include "common/FileIdentity.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace glyphrun {

/// Where the pages of a file are: object numbers of the page tree. All documents of one file share
/// it, each of which would else walk the tree anew.
struct PageList {
  struct Page {
    int number; ///< 0: no object of its own, known to its document alone
    std::uint32_t node;
  };
  struct Node {
    int number; ///< likewise
    std::int32_t parent;
  };
  std::vector<Page> pages;
  std::vector<Node> nodes;
  /// Of the file that it is good for; nothing when another document of it may be another.
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
                                       const std::shared_ptr<const PageList>& known = nullptr,
                                       const std::atomic<bool>* stop = nullptr);
  ~PdfFile();
  PdfFile(const PdfFile&) = delete;
  PdfFile& operator=(const PdfFile&) = delete;

  MuContext& mu() const { return *m_mu; }
  pdf_document* document() const { return m_document; }
  PdfObject catalog() const;

  /// Pages that exist, whatever the file claims.
  std::int32_t pageCount() const { return static_cast<std::int32_t>(m_list->pages.size()); }
  /// `index` from 0. The document keeps it until it is forgotten.
  PdfObject page(std::int32_t index) const;
  PageFrame frameOf(std::int32_t index) const;
  /// Index of the page with an object number, or -1.
  std::int32_t pageWithNumber(int objectNumber) const;

  const std::shared_ptr<const PageList>& pageList() const { return m_list; }

  /// GLYPHRUN_FILE_...
  std::int32_t facts() const;
  /// Lets the document forget objects that were read, to stay small over many pages: a page with
  /// its content, which costs no more in a long document; or all, which does.
  void forgetPage(std::int32_t index);
  void forgetObjects();
  /// The page as MuPDF draws it, `index` from 0; null on failure. The caller drops it with
  /// fz_drop_page(), before the document goes.
  pdf_page* loadForDrawing(std::int32_t index);

private:
  explicit PdfFile(const std::atomic<bool>* stop) : m_mu(MuContext::create(stop)) {}
  void openDocument(const std::string& path);
  void authenticate(const std::u16string& password);
  bool hasPlainPages() const;
  void readPages(const std::optional<common::FileIdentity>& identity);
  bool fillPageTables();
  PdfObject trailer() const;
  PdfObject object(int number) const;
  PdfObject node(std::size_t index) const;
  PdfObject inherited(std::int32_t index, const char* key) const;
  void forget(int number);

  std::unique_ptr<MuContext> m_mu;
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  [[maybe_unused]] std::unique_ptr<std::FILE, Closer>
      m_source; ///< where MuPDF does not open it itself
  fz_stream* m_stream = nullptr;
  pdf_document* m_document = nullptr;
  std::shared_ptr<const PageList> m_list;
  // By index, kept: pages and nodes that are no objects of their own, which hardly a file has.
  std::unordered_map<std::size_t, pdf_obj*> m_ownPages;
  std::unordered_map<std::size_t, pdf_obj*> m_ownNodes;
  mutable std::unordered_map<int, std::int32_t> m_pagesByNumber;
  bool m_treeLoaded = false;
};

} // namespace glyphrun
