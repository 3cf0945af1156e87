#include "Annotations.h"

#include <algorithm>
#include <string>

namespace glyphrun {

namespace {

constexpr int mostAnnotations = 100'000;

// Flags of PDF 32000-1, table 165.
constexpr int flagHidden = 1 << 1;
constexpr int flagNoView = 1 << 5;
// Of a field, table 228.
constexpr int flagPassword = 1 << 13;

bool readNumbers(const PdfObject& array, int count, double* out) {
  if (array.size() < count) {
    return false;
  }
  for (int i = 0; i < count; ++i) {
    out[i] = array.at(i).number();
  }
  return true;
}

/// The appearance for the screen in the annotation's present state, or nothing.
PdfObject appearanceOf(const PdfObject& annotation) {
  const PdfObject normal = annotation.get("AP").get("N");
  if (normal.isStream() || !normal.isDict()) {
    return normal;
  }
  const PdfObject state = annotation.get("AS");
  return state.isName() ? normal.get(state.name()) : PdfObject();
}

// PDF 32000-1, 12.5.5: the form's box, as its matrix turns it, is fitted into the rectangle.
bool placeInRectangle(const PdfObject& annotation, const PdfObject& form, Matrix& matrix) {
  double r[4];
  double b[4];
  double m[6] = {1, 0, 0, 1, 0, 0};
  if (!readNumbers(annotation.get("Rect"), 4, r) || !readNumbers(form.get("BBox"), 4, b)) {
    return false;
  }
  readNumbers(form.get("Matrix"), 6, m);
  const Rect target{std::min(r[0], r[2]), std::min(r[1], r[3]), std::max(r[0], r[2]),
                    std::max(r[1], r[3])};
  const Rect box = Matrix{m[0], m[1], m[2], m[3], m[4], m[5]}.bounds(
      {std::min(b[0], b[2]), std::min(b[1], b[3]), std::max(b[0], b[2]), std::max(b[1], b[3])});
  const double width = box.right - box.left;
  const double height = box.bottom - box.top;
  const double sx = width > 0 ? (target.right - target.left) / width : 1;
  const double sy = height > 0 ? (target.bottom - target.top) / height : 1;
  matrix = {sx, 0, 0, sy, target.left - box.left * sx, target.top - box.top * sy};
  return matrix.finite();
}

bool isShown(const PdfObject& annotation, LayerVisibility& layers) {
  const int flags = annotation.get("F").integer();
  return (flags & (flagHidden | flagNoView)) == 0 && !annotation.get("Subtype").isNamed("Popup") &&
         !layers.hides(annotation.get("OC"));
}

/// A value of a field, its own or by inheritance.
PdfObject inheritedOf(const PdfObject& field, const char* key) {
  constexpr int deepest = 32;
  PdfObject at = field;
  for (int i = 0; i < deepest && at; ++i, at = at.get("Parent")) {
    if (const PdfObject value = at.get(key)) {
      return value;
    }
  }
  return {};
}

bool isFilledText(const PdfObject& annotation) {
  if (!annotation.get("Subtype").isNamed("Widget") || !inheritedOf(annotation, "V")) {
    return false;
  }
  const PdfObject type = inheritedOf(annotation, "FT");
  const bool secret =
      type.isNamed("Tx") && (inheritedOf(annotation, "Ff").integer() & flagPassword) != 0;
  return !secret && (type.isNamed("Tx") || type.isNamed("Ch"));
}

/// What is drawn already is better kept when it shows the value as it stands: the file's own font
/// and place say more than a drawing anew.
bool keepsAppearance(PdfFile& file, const PdfObject& annotation, bool redraw) {
  if (!redraw || !annotation.get("AP")) {
    return bool(annotation.get("AP"));
  }
  const std::string_view value = inheritedOf(annotation, "V").bytes();
  const PdfObject drawn = annotation.get("AP").get("N");
  if (value.empty() || !drawn.isStream()) {
    return false;
  }
  StreamData content;
  constexpr std::size_t longest = std::size_t{1} << 16;
  StreamReader(file.mu()).append(drawn, longest, content);
  return content.view().find("(" + std::string(value) + ")") != std::string_view::npos;
}

// A field that was filled without drawing its appearance shows it all the same: readers draw it.
void drawAppearances(PdfFile& file, std::int32_t index, bool existingToo) {
  fz_context* ctx = file.mu().raw();
  pdf_page* page = file.loadForDrawing(index);
  if (page == nullptr) {
    return;
  }
  for (pdf_annot* widget = pdf_first_widget(ctx, page); widget != nullptr;
       widget = pdf_next_widget(ctx, widget)) {
    const PdfObject annotation(file.mu(), pdf_annot_obj(ctx, widget));
    if (!isFilledText(annotation) || keepsAppearance(file, annotation, existingToo)) {
      continue;
    }
    // MuPDF keeps what it draws to itself, unless it is asked to after a change of the document.
    file.mu().attempt([&] {
      pdf_dict_puts_drop(ctx, annotation.raw(), "AP", pdf_new_dict(ctx, file.document(), 1));
      pdf_annot_request_resynthesis(ctx, widget);
    });
  }
  file.mu().attempt([&] {
    file.document()->resynth_required = 1;
    pdf_update_page(ctx, page);
  });
  fz_drop_page(ctx, &page->super);
}

} // namespace

std::vector<Appearance> visibleAppearances(PdfFile& file, std::int32_t index,
                                           LayerVisibility& layers) {
  std::vector<Appearance> found;
  const PdfObject page = file.page(index);
  const PdfObject list = page.get("Annots");
  const int count = std::min(list.size(), mostAnnotations);
  const bool redraw = file.catalog().get("AcroForm").get("NeedAppearances").isTrue();
  bool drawn = false;
  for (int i = 0; i < count; ++i) {
    const PdfObject annotation = list.at(i);
    if (!annotation.isDict() || !isShown(annotation, layers)) {
      continue;
    }
    PdfObject form = appearanceOf(annotation);
    if (!drawn && isFilledText(annotation) && !keepsAppearance(file, annotation, redraw)) {
      drawn = true;
      drawAppearances(file, index, redraw);
      form = appearanceOf(annotation);
    }
    Matrix matrix;
    if (form.isStream() && placeInRectangle(annotation, form, matrix)) {
      found.push_back({form, matrix});
    }
  }
  return found;
}

} // namespace glyphrun
