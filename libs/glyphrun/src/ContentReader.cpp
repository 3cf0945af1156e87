#include "ContentReader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace glyphrun {

namespace {

constexpr std::size_t mostOperands = 64;
constexpr std::size_t mostArrayItems = 100'000;
constexpr std::size_t mostStates = 4096;
constexpr std::size_t operatorsPerClock = 65536;

// Letter-spacing in ems: below the first it never parts, above the second it always does.
constexpr double fewestGap = 0.15;
constexpr double widestSpacing = 1.0;
constexpr std::size_t fewestSpacedLetters = 3;
// Thousandths of an em that are kerning at most.
constexpr double smallAdjustment = 60;

constexpr std::uint32_t keyOf(std::string_view keyword) {
  std::uint32_t key = 0;
  for (std::size_t i = 0; i < keyword.size(); ++i)
    key |= static_cast<std::uint32_t>(static_cast<unsigned char>(keyword[i])) << (8 * i);
  return key;
}

Matrix matrixOf(const PdfObject& array) {
  if (array.size() < 6)
    return {};
  return {array.at(0).number(), array.at(1).number(), array.at(2).number(),
          array.at(3).number(), array.at(4).number(), array.at(5).number()};
}

Rect rectOf(const PdfObject& array) {
  const double x0 = array.at(0).number();
  const double y0 = array.at(1).number();
  const double x1 = array.at(2).number();
  const double y1 = array.at(3).number();
  return {std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)};
}

std::u16string textOfString(std::string_view bytes) {
  if (bytes.size() >= 2 && bytes.substr(0, 2) == "\xFE\xFF") {
    std::u16string text;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2)
      text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8 |
                                           static_cast<unsigned char>(bytes[i + 1])));
    return text;
  }
  std::u16string text;
  for (const char byte : bytes)
    text.push_back(fz_unicode_from_pdf_doc_encoding[static_cast<unsigned char>(byte)]);
  return text;
}

} // namespace

bool LayerVisibility::hides(const PdfObject& content) {
  if (!content.isDict())
    return false;
  const int number = content.objectNumber();
  if (number != 0) {
    const auto known = known_.find(number);
    if (known != known_.end())
      return known->second;
  }
  int hidden = 0;
  mu_.attempt(
      [&] { hidden = pdf_is_ocg_hidden(mu_.raw(), document_, nullptr, "View", content.raw()); });
  if (number != 0)
    known_[number] = hidden != 0;
  return hidden != 0;
}

std::shared_ptr<FormCache::Form> FormCache::find(const PdfObject& stream, std::size_t limit) {
  constexpr std::size_t mostBytes = std::size_t{8} << 20;
  const int number = stream.objectNumber();
  const auto known = forms_.find(number);
  if (number != 0 && known != forms_.end())
    return known->second;
  auto form = std::make_shared<Form>();
  if (!streams_.append(stream, limit, form->data))
    return nullptr;
  const std::size_t size = form->data.bytes.size();
  if (number == 0 || form->data.cut || size > mostBytes / 4)
    return form;
  if (bytes_ + size > mostBytes) {
    forms_.clear();
    bytes_ = 0;
  }
  form->data.bytes.shrink_to_fit();
  bytes_ += size + sizeof(Form);
  forms_[number] = form;
  return form;
}

ContentReader::ContentReader(MuContext& mu, StreamReader& streams, FontCache& fonts,
                             LayerVisibility& layers, WordAssembler& words)
    : mu_(mu), fonts_(fonts), layers_(layers), words_(words), forms_(streams) {}

void ContentReader::beginPage(const PageLimits& limits) {
  operatorsLeft_ = limits.operators;
  glyphsAllowed_ = limits.glyphs;
  glyphsShown_ = 0;
  bytesLeft_ = limits.contentBytes;
  formDepth_ = limits.formDepth;
  damaged_ = false;
  stopped_ = false;
  frames_.clear();
  states_.clear();
  openForms_.clear();
  marks_.clear();
  hiddenMarks_ = 0;
  unsavedStates_ = 0;
}

bool ContentReader::spend(std::size_t bytes) {
  if (bytes > bytesLeft_) {
    damaged_ = stopped_ = true;
    return false;
  }
  bytesLeft_ -= bytes;
  return true;
}

void ContentReader::runContent(std::string_view content, const PdfObject& resources,
                               const Matrix& matrix) {
  state_ = State();
  state_.matrix = matrix;
  frames_.push_back({resources, {}, states_.size(), marks_.size()});
  ContentLexer lexer(content);
  execute(lexer);
  while (marks_.size() > frames_.back().marksBelow)
    endMarked();
  states_.resize(frames_.back().statesBelow);
  unsavedStates_ = 0;
  frames_.pop_back();
  // Annotations are drawn behind the content and start afresh.
  state_ = State();
}

void ContentReader::runForm(const PdfObject& form, const PdfObject& resources,
                            const Matrix& matrix) {
  if (stopped_)
    return;
  if (openForms_.size() >= static_cast<std::size_t>(formDepth_)) {
    damaged_ = true;
    return;
  }
  const int number = form.objectNumber();
  if (std::find(openForms_.begin(), openForms_.end(), number) != openForms_.end())
    return;
  const std::shared_ptr<FormCache::Form> content = forms_.find(form, bytesLeft_);
  if (!content) {
    damaged_ = true;
    return;
  }
  if (content->textless)
    return;
  damaged_ = damaged_ || content->data.damaged;
  if (!spend(content->data.bytes.size() + 64))
    return;

  const State outer = state_;
  const Matrix outerText = textMatrix_;
  const Matrix outerLine = lineMatrix_;
  const Rect outerVisible = words_.visible();
  const std::size_t textBefore = textOperators_;
  const bool damagedBefore = damaged_;

  state_.matrix = matrixOf(form.get("Matrix")) * matrix;
  const PdfObject box = form.get("BBox");
  if (box.size() == 4)
    words_.setVisible(outerVisible.intersected(state_.matrix.bounds(rectOf(box))));
  const PdfObject own = form.get("Resources");
  openForms_.push_back(number);
  frames_.push_back({own.isDict() ? own : resources, {}, states_.size(), marks_.size()});
  const std::size_t unsaved = std::exchange(unsavedStates_, 0);
  ContentLexer lexer(content->data.view());
  execute(lexer);
  while (marks_.size() > frames_.back().marksBelow)
    endMarked();
  states_.resize(frames_.back().statesBelow);
  unsavedStates_ = unsaved;
  frames_.pop_back();
  openForms_.pop_back();

  if (textOperators_ == textBefore && !stopped_ && damaged_ == damagedBefore && own.isDict())
    content->textless = true;
  words_.setVisible(outerVisible);
  state_ = outer;
  textMatrix_ = outerText;
  lineMatrix_ = outerLine;
}

void ContentReader::execute(ContentLexer& lexer) {
  operands_.clear();
  Token token;
  while (!stopped_ && lexer.next(token) != TokenKind::End) {
    switch (token.kind) {
    case TokenKind::Number:
    case TokenKind::Name:
    case TokenKind::String:
      if (operands_.size() >= mostOperands)
        operands_.clear();
      operands_.push_back(token);
      break;
    case TokenKind::ArrayOpen:
      readArray(lexer);
      break;
    case TokenKind::DictOpen:
      readDictionary(lexer);
      break;
    case TokenKind::Keyword:
      if (operatorsLeft_-- == 0 || (operatorsLeft_ % operatorsPerClock == 0 && mu_.overdue())) {
        damaged_ = stopped_ = true;
        return;
      }
      if (token.text.size() <= 3)
        handleOperator(keyOf(token.text), lexer);
      operands_.clear();
      array_.clear();
      break;
    default:
      break;
    }
  }
}

void ContentReader::readArray(ContentLexer& lexer) {
  array_.clear();
  Token item;
  while (lexer.next(item) != TokenKind::End && item.kind != TokenKind::ArrayClose)
    if (array_.size() < mostArrayItems &&
        (item.kind == TokenKind::Number || item.kind == TokenKind::String))
      array_.push_back(item);
}

// Of a dictionary in the content only a replacement text matters.
void ContentReader::readDictionary(ContentLexer& lexer) {
  hasActualText_ = false;
  bool awaited = false;
  int depth = 1;
  Token token;
  while (depth > 0 && lexer.next(token) != TokenKind::End) {
    if (token.kind == TokenKind::DictOpen)
      ++depth;
    else if (token.kind == TokenKind::DictClose)
      --depth;
    if (token.kind == TokenKind::String && awaited) {
      hasActualText_ = true;
      actualText_ = token.text;
    }
    awaited = depth == 1 && token.kind == TokenKind::Name && token.text == "ActualText";
  }
  Token marker;
  marker.kind = TokenKind::DictOpen;
  if (operands_.size() < mostOperands)
    operands_.push_back(marker);
}

double ContentReader::number(std::size_t index) const {
  return index < operands_.size() && operands_[index].kind == TokenKind::Number
             ? operands_[index].number
             : 0;
}

std::string_view ContentReader::text(std::size_t index, TokenKind kind) const {
  return index < operands_.size() && operands_[index].kind == kind ? operands_[index].text
                                                                   : std::string_view();
}

void ContentReader::handleOperator(std::uint32_t key, ContentLexer& lexer) {
  TextState& textState = state_.text;
  switch (key) {
  case keyOf("BT"):
    textMatrix_ = lineMatrix_ = Matrix();
    break;
  case keyOf("Tc"):
    textState.charSpace = number(0);
    break;
  case keyOf("Tw"):
    textState.wordSpace = number(0);
    break;
  case keyOf("Tz"):
    textState.scale = number(0) / 100;
    break;
  case keyOf("TL"):
    textState.leading = number(0);
    break;
  case keyOf("Tf"):
    selectFont();
    break;
  case keyOf("Ts"):
    textState.rise = number(0);
    break;
  case keyOf("Td"):
    moveLine(number(0), number(1));
    break;
  case keyOf("TD"):
    textState.leading = -number(1);
    moveLine(number(0), number(1));
    break;
  case keyOf("Tm"):
    textMatrix_ = lineMatrix_ = {number(0), number(1), number(2), number(3), number(4), number(5)};
    break;
  case keyOf("T*"):
    moveLine(0, -textState.leading);
    break;
  case keyOf("Tj"):
    showString(text(0, TokenKind::String));
    break;
  case keyOf("TJ"):
    showArray();
    break;
  case keyOf("'"):
    moveLine(0, -textState.leading);
    showString(text(0, TokenKind::String));
    break;
  case keyOf("\""):
    textState.wordSpace = number(0);
    textState.charSpace = number(1);
    moveLine(0, -textState.leading);
    showString(text(2, TokenKind::String));
    break;
  case keyOf("q"):
    save();
    break;
  case keyOf("Q"):
    restore();
    break;
  case keyOf("cm"):
    state_.matrix =
        Matrix{number(0), number(1), number(2), number(3), number(4), number(5)} * state_.matrix;
    break;
  case keyOf("gs"):
    applyGraphicsState();
    break;
  case keyOf("Do"):
    drawXObject(text(0, TokenKind::Name));
    break;
  case keyOf("BMC"):
    beginMarked(false);
    break;
  case keyOf("BDC"):
    beginMarked(true);
    break;
  case keyOf("EMC"):
    if (marks_.size() > frames_.back().marksBelow)
      endMarked();
    break;
  case keyOf("ID"):
    lexer.skipInlineImageData();
    break;
  default:
    break;
  }
}

void ContentReader::save() {
  // States beyond the limit are counted only, so that the ones below come back at their own Q.
  if (states_.size() >= mostStates)
    ++unsavedStates_;
  else
    states_.push_back(state_);
}

void ContentReader::restore() {
  if (unsavedStates_ > 0) {
    --unsavedStates_;
  } else if (states_.size() > frames_.back().statesBelow) {
    state_ = states_.back();
    states_.pop_back();
  }
}

void ContentReader::selectFont() {
  const std::string_view name = text(0, TokenKind::Name);
  state_.text.size = number(1);
  Frame& frame = frames_.back();
  for (const auto& [known, font] : frame.fonts) {
    if (known == name) {
      state_.text.font = font;
      return;
    }
  }
  const std::string key(name);
  state_.text.font = fonts_.find(frame.resources.get("Font").get(key.c_str()));
  frame.fonts.emplace_back(key, state_.text.font);
}

void ContentReader::applyGraphicsState() {
  const std::string name(text(0, TokenKind::Name));
  const PdfObject font = frames_.back().resources.get("ExtGState").get(name.c_str()).get("Font");
  if (font.size() == 2) {
    state_.text.font = fonts_.find(font.at(0));
    state_.text.size = font.at(1).number();
  }
}

void ContentReader::moveLine(double x, double y) {
  lineMatrix_.e += x * lineMatrix_.a + y * lineMatrix_.c;
  lineMatrix_.f += x * lineMatrix_.b + y * lineMatrix_.d;
  textMatrix_ = lineMatrix_;
}

void ContentReader::startRun(std::size_t longestPiece) {
  ++textOperators_;
  TextState& textState = state_.text;
  if (textState.font == nullptr)
    textState.font = fonts_.find(PdfObject());
  const Matrix matrix = textMatrix_ * state_.matrix;
  const bool vertical = textState.font->vertical;
  const Point right = matrix.applyVector({1, 0});
  const Point up = matrix.applyVector({0, 1});
  const double horizontal = textState.size * textState.scale;
  pen_ = 0;
  textShift_ = 0;
  emits_ = false;
  spacing_ = 0;
  spacingParts_ = false;

  const Point along = vertical ? up * -textState.size : right * horizontal;
  const double emAlong = length(along);
  const double perUnit = vertical ? -length(up) : length(right);
  const double sign = (vertical ? textState.size : horizontal) < 0 ? -1 : 1;
  unit_ = perUnit * sign;
  if (!matrix.finite() || !std::isfinite(emAlong) || emAlong < 1e-6)
    return;
  GlyphRun run;
  run.origin = matrix.apply({0, textState.rise});
  run.direction = along * (1 / emAlong);
  const Point other = vertical ? right * horizontal : up * textState.size;
  run.em = std::abs(other.x * run.direction.y - other.y * run.direction.x);
  run.emAlong = emAlong;
  run.vertical = vertical;
  run.font = textState.font;
  if (run.em < 1e-6 || !std::isfinite(run.em) || !std::isfinite(run.origin.x) ||
      !std::isfinite(run.origin.y))
    return;
  spacing_ = textState.charSpace * (vertical ? 1 : textState.scale) * unit_;
  emits_ = !hidden();
  if (emits_)
    words_.beginRun(run);
  // Some producers set character spacing for a single gap inside a line. Spaced letters are more
  // than two, and do not go on from plain ones.
  const std::size_t glyphs = textState.font->oneByte ? longestPiece : longestPiece / 2;
  const bool spacedBefore = std::abs(spacing_ - lastSpacing_) < spacing_ / 4;
  spacingParts_ = spacing_ > fewestGap * emAlong &&
                  (glyphs < fewestSpacedLetters || spacing_ > widestSpacing * emAlong ||
                   (words_.continues() && !spacedBefore));
}

template <bool OneByte> void ContentReader::showGlyphs(std::string_view bytes) {
  const TextState& textState = state_.text;
  Font& font = *textState.font;
  const double scale = font.vertical ? 1 : textState.scale;
  const double advanceScale = textState.size * scale;
  for (std::size_t at = 0; at < bytes.size();) {
    std::uint32_t code = static_cast<unsigned char>(bytes[at]);
    const unsigned taken = OneByte ? 1 : font.takeCode(bytes.substr(at), code);
    const CodeInfo* info = OneByte ? &font.codes[code] : &font.lookUp(code);
    at += taken;
    if ((info->traits & TraitUnknown) != 0 && font.mayAskProgram) {
      fonts_.askProgram(font);
      info = OneByte ? &font.codes[code] : &font.lookUp(code);
    }
    const double advance = static_cast<double>(info->advance) * advanceScale;
    if (emits_) {
      const double end = pen_ + advance * unit_;
      words_.addGlyph(*info, std::min(pen_, end), std::max(pen_, end));
      if (spacingParts_)
        words_.addGap(spacing_);
    }
    double shift = advance + textState.charSpace * scale;
    if (taken == 1 && code == ' ')
      shift += textState.wordSpace * scale;
    textShift_ += shift;
    pen_ += shift * unit_;
  }
  glyphsShown_ += bytes.size();
  if (glyphsShown_ > glyphsAllowed_)
    damaged_ = stopped_ = true;
}

void ContentReader::finishRun() {
  if (emits_)
    words_.endRun(spacingParts_ ? 0 : spacing_);
  lastSpacing_ = spacing_;
  const bool vertical = state_.text.font->vertical;
  textMatrix_.e += textShift_ * (vertical ? textMatrix_.c : textMatrix_.a);
  textMatrix_.f += textShift_ * (vertical ? textMatrix_.d : textMatrix_.b);
}

void ContentReader::showString(std::string_view bytes) {
  startRun(bytes.size());
  if (state_.text.font->oneByte)
    showGlyphs<true>(bytes);
  else
    showGlyphs<false>(bytes);
  finishRun();
}

void ContentReader::showArray() {
  // Bytes that follow one another without an adjustment to speak of.
  std::size_t piece = 0;
  std::size_t longest = 0;
  for (const Token& item : array_) {
    if (item.kind == TokenKind::Number)
      piece = std::abs(item.number) < smallAdjustment ? piece : 0;
    else
      longest = std::max(longest, piece += item.text.size());
  }
  startRun(longest);
  for (const Token& item : array_) {
    if (item.kind == TokenKind::Number)
      showAdjustment(item.number);
    else if (state_.text.font->oneByte)
      showGlyphs<true>(item.text);
    else
      showGlyphs<false>(item.text);
    if (stopped_)
      break;
  }
  array_.clear();
  finishRun();
}

void ContentReader::showAdjustment(double thousandths) {
  const TextState& textState = state_.text;
  const bool vertical = textState.font->vertical;
  const double shift = -thousandths / 1000 * textState.size * (vertical ? 1 : textState.scale);
  textShift_ += shift;
  pen_ += shift * unit_;
  // Negative letter-spacing narrows what the adjustment opens; a positive one is no gap by itself.
  if (emits_)
    words_.addGap(shift * unit_ + (spacingParts_ ? spacing_ : std::min(spacing_, 0.0)));
}

void ContentReader::drawXObject(std::string_view name) {
  if (hidden())
    return;
  const std::string key(name);
  const PdfObject& resources = frames_.back().resources;
  const PdfObject object = resources.get("XObject").get(key.c_str());
  if (!object.get("Subtype").isNamed("Form") || layers_.hides(object.get("OC")))
    return;
  runForm(object, PdfObject(resources), state_.matrix);
}

void ContentReader::beginMarked(bool withProperties) {
  Mark mark = Mark::Plain;
  if (withProperties) {
    const std::string_view tag = text(0, TokenKind::Name);
    const std::string property(text(1, TokenKind::Name));
    std::string replacement;
    bool replaces = false;
    if (!property.empty()) {
      const PdfObject dictionary = frames_.back().resources.get("Properties").get(property.c_str());
      const PdfObject actual = dictionary.get("ActualText");
      replaces = actual.isString();
      replacement = std::string(actual.bytes());
      if (tag == "OC" && layers_.hides(dictionary))
        mark = Mark::Hidden;
    } else if (operands_.size() > 1 && operands_[1].kind == TokenKind::DictOpen) {
      replaces = hasActualText_;
      if (replaces)
        replacement = std::string(actualText_);
    }
    if (mark == Mark::Plain && replaces && !hidden() && !words_.replacing()) {
      mark = Mark::Replacement;
      words_.beginReplacement(textOfString(replacement));
    }
  }
  hiddenMarks_ += mark == Mark::Hidden;
  marks_.push_back(mark);
}

void ContentReader::endMarked() {
  const Mark mark = marks_.back();
  marks_.pop_back();
  if (mark == Mark::Hidden)
    --hiddenMarks_;
  else if (mark == Mark::Replacement)
    words_.endReplacement();
}

} // namespace glyphrun
