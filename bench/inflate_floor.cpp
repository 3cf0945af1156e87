// inflate_floor FILE: inflates the content of every page and does nothing with it.
//
// No reader of words can be faster than this; how close it comes is what counts.
#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <cstdio>

namespace {

struct Totals {
  int pages = 0;
  unsigned long long bytes = 0;
};

void inflatePage(fz_context* context, pdf_document* document, int index, Totals& totals) {
  pdf_obj* const page = pdf_lookup_page_obj(context, document, index);
  fz_stream* stream = nullptr;
  unsigned char block[16 * 1024];
  fz_var(stream);
  fz_try(context) {
    stream = pdf_open_contents_stream(context, document,
                                      pdf_dict_get(context, page, PDF_NAME(Contents)));
    std::size_t taken = 0;
    do {
      taken = fz_read(context, stream, block, sizeof block);
      totals.bytes += taken;
    } while (taken > 0);
  }
  fz_always(context) {
    fz_drop_stream(context, stream);
  }
  fz_catch(context) {
    fz_rethrow(context);
  }
}

bool inflateFile(fz_context* context, const char* path, Totals& totals) {
  pdf_document* document = nullptr;
  bool good = true;
  fz_var(document);
  fz_try(context) {
    document = pdf_open_document(context, path);
    // Without it each look-up of a page walks the tree again.
    pdf_load_page_tree(context, document);
    totals.pages = pdf_count_pages(context, document);
    for (int index = 0; index < totals.pages; ++index) {
      inflatePage(context, document, index, totals);
    }
    pdf_drop_page_tree(context, document);
  }
  fz_always(context) {
    pdf_drop_document(context, document);
  }
  fz_catch(context) {
    std::fprintf(stderr, "inflate_floor: %s: %s\n", path, fz_caught_message(context));
    good = false;
  }
  return good;
}

} // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::fputs("usage: inflate_floor FILE\n", stderr);
    return 2;
  }
  fz_context* const context = fz_new_context(nullptr, nullptr, FZ_STORE_DEFAULT);
  if (context == nullptr) {
    std::fputs("inflate_floor: no context\n", stderr);
    return 1;
  }
  Totals totals;
  const bool good = inflateFile(context, argv[1], totals);
  fz_drop_context(context);
  if (!good) {
    return 1;
  }
  std::printf("%d pages, %llu bytes\n", totals.pages, totals.bytes);
  return 0;
}
