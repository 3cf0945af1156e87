#include "Repair.h"

#include "PdfFile.h"
#include "common/AsideFile.h"
#include "common/Failure.h"

#include <glyphrun/glyphrun.h>

#include <chrono>

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

Outcome write(const PdfFile& file, Sink& sink) {
  fz_context* ctx = file.mu().raw();
  fz_output* out = nullptr;
  pdf_write_options options = pdf_default_write_options;
  options.do_encrypt = PDF_ENCRYPT_NONE;
  options.do_garbage = 1;
  file.mu().allow(memory, longest);
  const Outcome outcome = file.mu().attempt([&] {
    out = fz_new_output(ctx, 0, &sink, append, nullptr, nullptr);
    out->tell = tell;
    pdf_write_document(ctx, file.document(), out, &options);
    fz_close_output(ctx, out);
  });
  file.mu().relax();
  fz_drop_output(ctx, out);
  return outcome;
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
  copy.keep();
  return file->pageCount();
}

} // namespace glyphrun
