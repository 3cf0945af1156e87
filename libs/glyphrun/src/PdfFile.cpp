#include "PdfFile.h"

#include "common/Failure.h"
#include "common/FileCalls.h"
#include "common/Passwords.h"
#include "common/Paths.h"
#include "common/Utf16.h"

#include <glyphrun/glyphrun.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <unordered_set>

namespace glyphrun {

using common::Failure;

namespace {

constexpr double standardWidth = 612;
constexpr double standardHeight = 792;
// Larger coordinates are damage; they would only spoil the arithmetic.
constexpr double farthest = 1e6;

bool readRect(const PdfObject& array, Rect& out) {
  if (array.size() < 4) {
    return false;
  }
  double value[4];
  for (int i = 0; i < 4; ++i) {
    value[i] = std::clamp(array.at(i).number(), -farthest, farthest);
  }
  out = {std::min(value[0], value[2]), std::min(value[1], value[3]), std::max(value[0], value[2]),
         std::max(value[1], value[3])};
  return !out.empty();
}

Matrix shownMatrix(const Rect& crop, int rotation) {
  switch (rotation) {
  case 90:
    return {0, 1, 1, 0, -crop.top, -crop.left};
  case 180:
    return {-1, 0, 0, 1, crop.right, -crop.top};
  case 270:
    return {0, -1, -1, 0, crop.bottom, crop.right};
  default:
    return {1, 0, 0, -1, -crop.left, crop.bottom};
  }
}

} // namespace

std::unique_ptr<PdfFile> PdfFile::open(const std::u16string& path, const std::u16string& password,
                                       const std::shared_ptr<const PageList>& known,
                                       const std::atomic<bool>* stop) {
  std::unique_ptr<PdfFile> file(new PdfFile(stop));
  const std::string name = common::toUtf8(path);
  const std::optional<common::FileIdentity> identity = common::FileIdentity::of(name);
  file->openDocument(name);
  file->authenticate(password);
  const bool isRepaired = (file->facts() & GLYPHRUN_FILE_REPAIRED) != 0;
  if (known && known->file && known->file == identity && !isRepaired) {
    file->m_list = known;
  } else {
    file->readPages(identity);
  }
  return file;
}

PdfFile::~PdfFile() {
  fz_context* ctx = m_mu->raw();
  for (const auto* own : {&m_ownPages, &m_ownNodes}) {
    for (const auto& [index, object] : *own) {
      pdf_drop_obj(ctx, object);
    }
  }
  if (m_treeLoaded) {
    pdf_drop_page_tree(ctx, m_document);
  }
  pdf_drop_document(ctx, m_document);
  fz_drop_stream(ctx, m_stream);
}

void PdfFile::openDocument(const std::string& path) {
  fz_context* ctx = m_mu->raw();
#if defined(_WIN32)
  // MuPDF's own way keeps others from replacing the file, and is itself kept off a part that is
  // being written.
  int error = 0;
  m_source.reset(common::files::openToRead(common::pathOf(path), common::Links::Followed, error));
  if (!m_source) {
    throw Failure(GLYPHRUN_CANNOT_OPEN,
                  std::generic_category().message(error != 0 ? error : EINVAL));
  }
  Outcome outcome =
      m_mu->attempt([&] { m_stream = fz_open_file_ptr_no_close(ctx, m_source.get()); });
#else
  Outcome outcome = m_mu->attempt([&] { m_stream = fz_open_file(ctx, path.c_str()); });
#endif
  int32_t code = GLYPHRUN_CANNOT_OPEN;
  if (outcome == Outcome::Ok) {
    outcome = m_mu->attempt([&] { m_document = pdf_open_document_with_stream(ctx, m_stream); });
    // The document is gone with a failure, so its handler is known only by MuPDF's words.
    const std::string& reason = m_mu->message();
    const bool handler = reason.find("encryption handler") != std::string::npos ||
                         reason.find("encryption version") != std::string::npos ||
                         reason.find("crypt revision") != std::string::npos;
    code = handler ? GLYPHRUN_UNSUPPORTED : GLYPHRUN_NOT_A_PDF;
  }
  if (outcome != Outcome::Ok) {
    throw Failure(outcome == Outcome::OutOfMemory ? GLYPHRUN_OUT_OF_MEMORY : code, m_mu->message());
  }
}

void PdfFile::authenticate(const std::u16string& password) {
  fz_context* ctx = m_mu->raw();
  int needed = 1;
  int revision = 0;
  m_mu->attempt([&] {
    needed = pdf_needs_password(ctx, m_document);
    revision = m_document->crypt == nullptr ? 0 : pdf_crypt_revision(ctx, m_document->crypt);
  });
  if (needed == 0) {
    return;
  }
  // For older encryption MuPDF turns each character into its byte of PDFDocEncoding, so other
  // encodings are given as the characters that stand for their bytes.
  constexpr int lastByteEncoded = 4;
  std::vector<std::string> candidates = common::passwordCandidates(password);
  if (revision <= lastByteEncoded) {
    std::ranges::transform(candidates, candidates.begin(), common::textOfPdfDocBytes);
    candidates.insert(candidates.begin(), common::toUtf8(password));
  }
  for (const std::string& candidate : candidates) {
    int accepted = 0;
    m_mu->attempt(
        [&] { accepted = pdf_authenticate_password(ctx, m_document, candidate.c_str()); });
    if (accepted != 0) {
      return;
    }
  }
  if (hasPlainPages()) {
    return;
  }
  throw Failure(GLYPHRUN_WRONG_PASSWORD,
                password.empty() ? "the file needs a password" : "the password is wrong");
}

/// Crypt filters may leave strings and streams as they are: then attachments alone are encrypted.
bool PdfFile::hasPlainPages() const {
  constexpr int firstWithFilters = 4;
  const PdfObject encryption = trailer().get("Encrypt");
  const auto isPlain = [&](const char* key) {
    const PdfObject filter = encryption.get(key);
    return !filter || filter.isNamed("Identity");
  };
  return encryption.get("V").integer() >= firstWithFilters && isPlain("StmF") && isPlain("StrF");
}

PdfObject PdfFile::trailer() const {
  pdf_obj* trailer = nullptr;
  m_mu->attempt([&] { trailer = pdf_trailer(m_mu->raw(), m_document); });
  return {*m_mu, trailer};
}

PdfObject PdfFile::catalog() const {
  return trailer().get("Root");
}

// Walks the page tree once, with a stack of its own: depth, loops and claimed counts of the file
// decide nothing. Every page found has been read, so the number is that of pages which exist.
void PdfFile::readPages(const std::optional<common::FileIdentity>& identity) {
  constexpr std::size_t deepest = 256;
  struct Level {
    std::size_t node;
    int next;
    int count;
  };
  // The pages of a short document stay in memory until they are read.
  constexpr std::size_t fewPages = 4096;
  const auto list = std::make_shared<PageList>();
  m_list = list;
  std::unordered_set<int> visited;
  std::vector<Level> stack;
  const auto keepOwn = [this](auto& own, std::size_t index, const PdfObject& object) {
    if (object.objectNumber() == 0) {
      own.emplace(index, pdf_keep_obj(m_mu->raw(), object.raw()));
    }
  };
  const auto forgetRead = [&](int number) {
    if (list->pages.size() > fewPages) {
      forget(number);
    }
  };
  const auto enter = [&](const PdfObject& kid, std::int32_t parent) {
    const int number = kid.objectNumber();
    if (stack.size() >= deepest || (number != 0 && !visited.insert(number).second)) {
      return;
    }
    keepOwn(m_ownNodes, list->nodes.size(), kid);
    list->nodes.push_back({number, parent});
    stack.push_back({list->nodes.size() - 1, 0, kid.get("Kids").size()});
  };
  const PdfObject root = catalog().get("Pages");
  if (root.isDict()) {
    enter(root, -1);
  }
  while (!stack.empty() && !m_mu->overdue()) {
    Level& level = stack.back();
    const std::size_t above = level.node;
    if (level.next >= level.count) {
      stack.pop_back();
      forgetRead(list->nodes[above].number);
      continue;
    }
    const PdfObject kid = node(above).get("Kids").at(level.next++);
    if (!kid.isDict()) {
      continue;
    }
    if (kid.get("Kids").isArray()) {
      enter(kid, static_cast<std::int32_t>(above));
      continue;
    }
    const int number = kid.objectNumber();
    keepOwn(m_ownPages, list->pages.size(), kid);
    list->pages.push_back({number, static_cast<std::uint32_t>(above)});
    forgetRead(number);
  }
  if (list->pages.empty()) {
    throw Failure(GLYPHRUN_NOT_A_PDF, "no page can be found");
  }
  const bool isRepaired = (facts() & GLYPHRUN_FILE_REPAIRED) != 0;
  if (!isRepaired && m_ownPages.empty() && m_ownNodes.empty()) {
    list->file = identity;
  }
}

PdfObject PdfFile::object(int number) const {
  pdf_obj* object = nullptr;
  m_mu->attempt([&] { object = pdf_load_object(m_mu->raw(), m_document, number); });
  pdf_drop_obj(m_mu->raw(), object); // the document has it still
  return {*m_mu, object};
}

PdfObject PdfFile::node(std::size_t index) const {
  const int number = m_list->nodes[index].number;
  return number != 0 ? object(number) : PdfObject(*m_mu, m_ownNodes.at(index));
}

PdfObject PdfFile::page(std::int32_t index) const {
  const auto at = static_cast<std::size_t>(index);
  const int number = m_list->pages[at].number;
  return number != 0 ? object(number) : PdfObject(*m_mu, m_ownPages.at(at));
}

PdfObject PdfFile::inherited(std::int32_t index, const char* key) const {
  PdfObject value = page(index).get(key);
  auto above = static_cast<std::int32_t>(m_list->pages[static_cast<std::size_t>(index)].node);
  while (!value && above >= 0) {
    value = node(static_cast<std::size_t>(above)).get(key);
    above = m_list->nodes[static_cast<std::size_t>(above)].parent;
  }
  return value;
}

PageFrame PdfFile::frameOf(std::int32_t index) const {
  PageFrame frame;
  frame.resources = inherited(index, "Resources");
  Rect media{0, 0, standardWidth, standardHeight};
  if (!readRect(inherited(index, "MediaBox"), media)) {
    media = {0, 0, standardWidth, standardHeight};
  }
  Rect crop;
  frame.crop = media;
  if (readRect(inherited(index, "CropBox"), crop) && !crop.intersected(media).empty()) {
    frame.crop = crop.intersected(media);
  }
  const int turns = inherited(index, "Rotate").integer() % 360;
  frame.rotation = ((turns + 360 + 45) / 90 * 90) % 360;
  frame.toShown = shownMatrix(frame.crop, frame.rotation);
  const double width = frame.crop.right - frame.crop.left;
  const double height = frame.crop.bottom - frame.crop.top;
  const bool sideways = frame.rotation == 90 || frame.rotation == 270;
  frame.width = sideways ? height : width;
  frame.height = sideways ? width : height;
  return frame;
}

std::int32_t PdfFile::pageWithNumber(int objectNumber) const {
  if (m_pagesByNumber.empty()) {
    for (std::int32_t i = 0; i < pageCount(); ++i) {
      m_pagesByNumber.emplace(m_list->pages[static_cast<std::size_t>(i)].number, i);
    }
  }
  const auto found = m_pagesByNumber.find(objectNumber);
  return objectNumber == 0 || found == m_pagesByNumber.end() ? -1 : found->second;
}

std::int32_t PdfFile::facts() const {
  std::int32_t facts = 0;
  fz_context* ctx = m_mu->raw();
  m_mu->attempt([&] {
    if (m_document->crypt != nullptr) {
      facts |= GLYPHRUN_FILE_ENCRYPTED;
    }
    if (pdf_has_permission(ctx, m_document, FZ_PERMISSION_COPY) == 0) {
      facts |= GLYPHRUN_FILE_FORBIDS_EXTRACTION;
    }
    if (pdf_was_repaired(ctx, m_document) != 0) {
      facts |= GLYPHRUN_FILE_REPAIRED;
    }
  });
  return facts;
}

// What pdf_clear_xref() does to all objects.
void PdfFile::forget(int number) {
  fz_context* ctx = m_mu->raw();
  m_mu->attempt([&] {
    pdf_xref_entry* entry = number > 0 && number < pdf_xref_len(ctx, m_document)
                                ? pdf_get_xref_entry(ctx, m_document, number)
                                : nullptr;
    if (entry != nullptr && entry->obj != nullptr && entry->stm_buf == nullptr) {
      pdf_drop_obj(ctx, entry->obj);
      entry->obj = nullptr;
    }
  });
}

void PdfFile::forgetPage(std::int32_t index) {
  const PdfObject contents = page(index).get("Contents");
  forget(contents.objectNumber());
  forget(m_list->pages[static_cast<std::size_t>(index)].number);
}

void PdfFile::forgetObjects() {
  m_mu->attempt([&] { pdf_clear_xref(m_mu->raw(), m_document); });
}

// MuPDF's own loading of the tree allocates by the claimed count and gives up on the slightest
// oddity, so its tables are filled from what was found here.
bool PdfFile::fillPageTables() {
  if (m_treeLoaded) {
    return true;
  }
  fz_context* ctx = m_mu->raw();
  int* forward = nullptr;
  pdf_rev_page_map* backward = nullptr;
  const std::vector<PageList::Page>& pages = m_list->pages;
  const Outcome outcome = m_mu->attempt([&] {
    forward = static_cast<int*>(fz_malloc(ctx, pages.size() * sizeof(int)));
    backward =
        static_cast<pdf_rev_page_map*>(fz_malloc(ctx, pages.size() * sizeof(pdf_rev_page_map)));
  });
  if (outcome != Outcome::Ok || forward == nullptr || backward == nullptr) {
    fz_free(ctx, forward);
    return false;
  }
  for (std::size_t i = 0; i < pages.size(); ++i) {
    forward[i] = pages[i].number;
    backward[i] = {static_cast<int>(i), forward[i]};
  }
  std::sort(backward, backward + pages.size(),
            [](const auto& a, const auto& b) { return a.object < b.object; });
  m_document->map_page_count = static_cast<int>(pages.size());
  m_document->fwd_page_map = forward;
  m_document->rev_page_map = backward;
  m_document->page_map_nesting = 1;
  m_treeLoaded = true;
  return true;
}

pdf_page* PdfFile::loadForDrawing(std::int32_t index) {
  if (!fillPageTables()) {
    return nullptr;
  }
  fz_context* ctx = m_mu->raw();
  pdf_obj* object = nullptr;
  pdf_page* loaded = nullptr;
  int before = 0;
  m_mu->attempt([&] {
    object =
        pdf_load_object(ctx, m_document, m_list->pages[static_cast<std::size_t>(index)].number);
    before = pdf_obj_refs(ctx, object);
    loaded = pdf_load_page(ctx, m_document, index);
  });
  // MuPDF forgets to give back the reference that its look-up by table takes, also when the page
  // then cannot be loaded. A page holds one of its own.
  const int held = loaded != nullptr && loaded->obj == object ? 1 : 0;
  if (object != nullptr && pdf_obj_refs(ctx, object) == before + held + 1) {
    pdf_drop_obj(ctx, object);
  }
  pdf_drop_obj(ctx, object);
  return loaded;
}

} // namespace glyphrun
