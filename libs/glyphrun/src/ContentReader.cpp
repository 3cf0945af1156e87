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
