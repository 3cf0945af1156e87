#include "Repair.h"

#include "PdfFile.h"
#include "common/AsideFile.h"
#include "common/Failure.h"
#include "common/Paths.h"

#include <glyphrun/glyphrun.h>

#include <chrono>
#include <unordered_map>
#include <utility>
#include <vector>

namespace glyphrun {

namespace {

using common::Failure;

constexpr std::chrono::minutes longest{2};
constexpr std::size_t memory = std::size_t{1024} << 20;

/// Where MuPDF writes: its frames let no exception through, so one that comes waits here.
struct Sink {
  common::AsideFile& file;
  std::exception_ptr fault;

  bool take(const void* data, std::size_t size) noexcept {
    try {
      file.append({static_cast<const char*>(data), size});
      return true;
    } catch (...) {
      fault = std::current_exception();
      return false;
    }
  }
};

void append(fz_context* ctx, void* sink, const void* data, std::size_t size) {
  if (!static_cast<Sink*>(sink)->take(data, size)) {
    fz_throw(ctx, FZ_ERROR_GENERIC, "the copy cannot be written");
  }
}

std::int64_t tell(fz_context*, void* sink) {
  return static_cast<std::int64_t>(static_cast<Sink*>(sink)->file.size());
}

/// Has a document forget what its trailer does not lead to, and what cannot be read: in a damaged
/// file that may be anything. MuPDF's own search goes as deep as a chain of objects is long, and
/// never ends at a stream whose length is the stream itself.
class Sweep {
public:
  explicit Sweep(const PdfFile& file) : m_ctx(file.mu().raw()), m_document(file.document()) {}
  ~Sweep() {
    for (pdf_obj* object : m_waiting) {
      pdf_drop_obj(m_ctx, object);
    }
  }
  Sweep(const Sweep&) = delete;
  Sweep& operator=(const Sweep&) = delete;

  /// To be attempted, like all that calls MuPDF.
  void run() {
    put(pdf_trailer(m_ctx, m_document));
    for (std::size_t done = 0; done < m_waiting.size(); ++done) {
      putContents(m_waiting[done]);
      pdf_drop_obj(m_ctx, std::exchange(m_waiting[done], nullptr));
    }
    const int count = pdf_xref_len(m_ctx, m_document);
    for (int number = 1; number < count; ++number) {
      if (!isSound(number)) {
        pdf_delete_object(m_ctx, m_document, number);
      }
    }
  }

private:
  bool isSound(int number) const {
    const auto met = m_sound.find(number);
    return met != m_sound.end() && met->second;
  }

  // What waits is kept: a look at a damaged object may have the whole document read anew.
  void put(pdf_obj* object) {
    const bool mayLead = pdf_is_indirect(m_ctx, object) != 0
                             ? m_sound.try_emplace(pdf_to_num(m_ctx, object), false).second
                             : pdf_is_dict(m_ctx, object) != 0 || pdf_is_array(m_ctx, object) != 0;
    if (mayLead) {
      m_waiting.push_back(object);
      pdf_keep_obj(m_ctx, object);
    }
  }

  void putContents(pdf_obj* object) {
    m_sound[pdf_to_num(m_ctx, object)] = pdf_is_null(m_ctx, object) == 0;
    for (int i = pdf_array_len(m_ctx, object) - 1; i >= 0; --i) {
      put(pdf_array_get(m_ctx, object, i));
    }
    for (int i = pdf_dict_len(m_ctx, object) - 1; i >= 0; --i) {
      put(pdf_dict_get_val(m_ctx, object, i));
    }
  }

  fz_context* m_ctx;
  pdf_document* m_document;
  std::unordered_map<int, bool> m_sound; ///< can be read, by the numbers of objects that were met
  std::vector<pdf_obj*> m_waiting;
};

Outcome write(const PdfFile& file, Sink& sink) {
  fz_context* ctx = file.mu().raw();
  fz_output* out = nullptr;
  pdf_write_options options = pdf_default_write_options;
  options.do_encrypt = PDF_ENCRYPT_NONE;
  file.mu().allow(memory, longest);
  Sweep sweep(file);
  const Outcome outcome = file.mu().attempt([&] {
    sweep.run();
    out = fz_new_output(ctx, 0, &sink, append, nullptr, nullptr);
    out->tell = tell;
    pdf_write_document(ctx, file.document(), out, &options);
    fz_close_output(ctx, out);
  });
  file.mu().relax();
  fz_drop_output(ctx, out);
  return outcome;
}

/// What is damaged may have had the whole document read anew meanwhile, as one without its pages.
bool hasPages(const std::u16string& path, std::int32_t pages) {
  try {
    return PdfFile::open(path, {})->pageCount() == pages;
  } catch (const Failure&) {
    return false;
  }
}

} // namespace

std::int32_t repairFile(const std::u16string& path, const std::u16string& password,
                        const std::string& target) {
  const std::unique_ptr<PdfFile> file = PdfFile::open(path, password);
  common::AsideFile copy(target, {.model = target});
  Sink sink{copy, nullptr};
  const Outcome outcome = write(*file, sink);
  if (sink.fault) {
    std::rethrow_exception(sink.fault);
  }
  if (outcome != Outcome::Ok) {
    throw Failure(outcome == Outcome::OutOfMemory ? GLYPHRUN_OUT_OF_MEMORY : GLYPHRUN_DAMAGED,
                  file->mu().message());
  }
  copy.flush();
  if (!hasPages(common::PartFile::placeFor(common::pathOf(target)).u16string(),
                file->pageCount())) {
    throw Failure(GLYPHRUN_DAMAGED, "a page is lost with what is damaged");
  }
  copy.keep();
  return file->pageCount();
}

} // namespace glyphrun
