#include "ContentReader.h"

#include "common/Utf16.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace glyphrun {

namespace {

constexpr std::size_t mostArrayItems = 100'000;
constexpr std::size_t mostStates = 4096;
constexpr std::size_t operatorsPerClock = 65536;

constexpr std::uint32_t keyOf(std::string_view keyword) {
  std::uint32_t key = 0;
  for (std::size_t i = 0; i < keyword.size(); ++i) {
    key |= static_cast<std::uint32_t>(static_cast<unsigned char>(keyword[i])) << (8 * i);
  }
  return key;
}

Matrix matrixOf(const PdfObject& array) {
  if (array.size() < 6) {
    return {};
  }
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

// A text string: UTF-16, UTF-8, or the document encoding. Escapes that name a language go.
std::u16string textOfString(std::string_view bytes) {
  std::u16string text;
  if (bytes.starts_with("\xFE\xFF")) {
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
      text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8 |
                                           static_cast<unsigned char>(bytes[i + 1])));
    }
  } else if (bytes.starts_with("\xEF\xBB\xBF")) {
    text = common::toUtf16(bytes.substr(3));
  } else {
    for (const char byte : bytes) {
      text.push_back(fz_unicode_from_pdf_doc_encoding[static_cast<unsigned char>(byte)]);
    }
  }
  constexpr char16_t escape = 0x1B;
  for (std::size_t from = 0; (from = text.find(escape, from)) != std::u16string::npos;) {
    const std::size_t to = text.find(escape, from + 1);
    text.erase(from, to == std::u16string::npos ? to : to - from + 1);
  }
  return text;
}

/// True when a replacement says less than the glyphs may say.
bool saysNothing(std::u16string_view text) {
  return !text.empty() && (traitsOf(text) & TraitUnknown) != 0;
}

} // namespace

ContentReader::ContentReader(MuContext& mu, StreamReader& streams, FontCache& fonts,
                             LayerVisibility& layers, WordAssembler& words)
    : m_mu(mu), m_fonts(fonts), m_layers(layers), m_words(words), m_forms(streams) {}

void ContentReader::beginPage(const PageLimits& limits) {
  m_operatorsLeft = limits.operators;
  m_glyphsAllowed = limits.glyphs;
  m_glyphsShown = 0;
  m_bytesLeft = limits.contentBytes;
  m_formDepth = limits.formDepth;
  m_damaged = false;
  m_stopped = false;
  m_frames.clear();
  m_states.clear();
  m_openForms.clear();
  m_marks.clear();
  m_hiddenMarks = 0;
  m_unsavedStates = 0;
}

bool ContentReader::spend(std::size_t bytes) {
  if (bytes > m_bytesLeft) {
    m_damaged = m_stopped = true;
    return false;
  }
  m_bytesLeft -= bytes;
  return true;
}

void ContentReader::runContent(std::string_view content, const PdfObject& resources,
                               const Matrix& matrix) {
  m_state = State();
  m_state.matrix = matrix;
  m_frames.push_back({resources, {}, m_states.size(), m_marks.size()});
  ContentLexer lexer(content);
  execute(lexer);
  while (m_marks.size() > m_frames.back().marksBelow) {
    endMarked();
  }
  m_states.resize(m_frames.back().statesBelow);
  m_unsavedStates = 0;
  m_frames.pop_back();
  // Annotations are drawn behind the content and start afresh.
  m_state = State();
}

void ContentReader::runForm(const PdfObject& form, const PdfObject& resources,
                            const Matrix& matrix) {
  if (m_stopped) {
    return;
  }
  if (m_openForms.size() >= static_cast<std::size_t>(m_formDepth)) {
    m_damaged = true;
    return;
  }
  const int number = form.objectNumber();
  if (std::find(m_openForms.begin(), m_openForms.end(), number) != m_openForms.end()) {
    return;
  }
  const std::shared_ptr<FormCache::Form> content = m_forms.find(form, m_bytesLeft);
  if (!content) {
    m_damaged = true;
    return;
  }
  if (content->textless) {
    return;
  }
  m_damaged = m_damaged || content->data.damaged;
  if (!spend(content->data.bytes.size() + 64)) {
    return;
  }

  const State outer = m_state;
  const Matrix outerText = m_textMatrix;
  const Matrix outerLine = m_lineMatrix;
  const Rect outerVisible = m_words.visible();
  const std::size_t textBefore = m_textOperators;
  const bool damagedBefore = m_damaged;

  m_state.matrix = matrixOf(form.get("Matrix")) * matrix;
  const PdfObject box = form.get("BBox");
  if (box.size() == 4) {
    m_words.setVisible(outerVisible.intersected(m_state.matrix.bounds(rectOf(box))));
  }
  const PdfObject own = form.get("Resources");
  m_openForms.push_back(number);
  m_frames.push_back({own.isDict() ? own : resources, {}, m_states.size(), m_marks.size()});
  const std::size_t unsaved = std::exchange(m_unsavedStates, 0);
  ContentLexer lexer(content->data.view());
  execute(lexer);
  while (m_marks.size() > m_frames.back().marksBelow) {
    endMarked();
  }
  m_states.resize(m_frames.back().statesBelow);
  m_unsavedStates = unsaved;
  m_frames.pop_back();
  m_openForms.pop_back();

  if (m_textOperators == textBefore && !m_stopped && m_damaged == damagedBefore && own.isDict()) {
    content->textless = true;
  }
  m_words.setVisible(outerVisible);
  m_state = outer;
  m_textMatrix = outerText;
  m_lineMatrix = outerLine;
}

void ContentReader::execute(ContentLexer& lexer) {
  m_operandCount = 0;
  while (!m_stopped) {
    Token& token = m_operands[m_operandCount];
    switch (lexer.next(token)) {
    case TokenKind::End:
      return;
    case TokenKind::Number:
    case TokenKind::Name:
    case TokenKind::String:
      if (m_operandCount == mostOperands) {
        m_operands.front() = token;
        m_operandCount = 0;
      }
      ++m_operandCount;
      break;
    case TokenKind::ArrayOpen:
      readArray(lexer);
      break;
    case TokenKind::DictOpen:
      readDictionary(lexer);
      break;
    case TokenKind::Keyword:
      if (m_operatorsLeft-- == 0 || (m_operatorsLeft % operatorsPerClock == 0 && m_mu.overdue())) {
        m_damaged = m_stopped = true;
        return;
      }
      if (token.text.size() <= 3) {
        handleOperator(keyOf(token.text), lexer);
      }
      m_operandCount = 0;
      m_array.clear();
      break;
    default:
      break;
    }
  }
}

void ContentReader::readArray(ContentLexer& lexer) {
  m_array.clear();
  Token item;
  while (lexer.next(item) != TokenKind::End && item.kind != TokenKind::ArrayClose) {
    if (m_array.size() < mostArrayItems &&
        (item.kind == TokenKind::Number || item.kind == TokenKind::String)) {
      m_array.push_back(item);
    }
  }
}

// Of a dictionary in the content only a replacement text matters.
void ContentReader::readDictionary(ContentLexer& lexer) {
  m_hasActualText = false;
  bool awaited = false;
  int depth = 1;
  Token token;
  while (depth > 0 && lexer.next(token) != TokenKind::End) {
    if (token.kind == TokenKind::DictOpen) {
      ++depth;
    } else if (token.kind == TokenKind::DictClose) {
      --depth;
    }
    if (token.kind == TokenKind::String && awaited) {
      m_hasActualText = true;
      m_actualText = token.text;
    }
    awaited = depth == 1 && token.kind == TokenKind::Name && token.text == "ActualText";
  }
  if (m_operandCount < mostOperands) {
    m_operands[m_operandCount++].kind = TokenKind::DictOpen;
  }
}

double ContentReader::number(std::size_t index) const {
  return index < m_operandCount && m_operands[index].kind == TokenKind::Number
             ? m_operands[index].number
             : 0;
}

std::string_view ContentReader::text(std::size_t index, TokenKind kind) const {
  return index < m_operandCount && m_operands[index].kind == kind ? m_operands[index].text
                                                                  : std::string_view();
}

void ContentReader::handleOperator(std::uint32_t key, ContentLexer& lexer) {
  TextState& textState = m_state.text;
  switch (key) {
  case keyOf("BT"):
    m_textMatrix = m_lineMatrix = Matrix();
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
    m_textMatrix =
        m_lineMatrix = {number(0), number(1), number(2), number(3), number(4), number(5)};
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
    m_state.matrix =
        Matrix{number(0), number(1), number(2), number(3), number(4), number(5)} * m_state.matrix;
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
    if (m_marks.size() > m_frames.back().marksBelow) {
      endMarked();
    }
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
  if (m_states.size() >= mostStates) {
    ++m_unsavedStates;
  } else {
    m_states.push_back(m_state);
  }
}

void ContentReader::restore() {
  if (m_unsavedStates > 0) {
    --m_unsavedStates;
  } else if (m_states.size() > m_frames.back().statesBelow) {
    m_state = m_states.back();
    m_states.pop_back();
  }
}

void ContentReader::drawXObject(std::string_view name) {
  if (hidden()) {
    return;
  }
  const std::string key(name);
  const PdfObject& resources = m_frames.back().resources;
  const PdfObject object = resources.get("XObject").get(key.c_str());
  if (!object.isStream() || !object.get("Subtype").isNamed("Form") ||
      m_layers.hides(object.get("OC"))) {
    return;
  }
  runForm(object, PdfObject(resources), m_state.matrix);
}

void ContentReader::beginMarked(bool withProperties) {
  Mark mark = Mark::Plain;
  if (withProperties) {
    const std::string_view tag = text(0, TokenKind::Name);
    const std::string property(text(1, TokenKind::Name));
    std::string replacement;
    bool replaces = false;
    if (!property.empty()) {
      const PdfObject dictionary =
          m_frames.back().resources.get("Properties").get(property.c_str());
      const PdfObject actual = dictionary.get("ActualText");
      replaces = actual.isString();
      replacement = std::string(actual.bytes());
      if (tag == "OC" && m_layers.hides(dictionary)) {
        mark = Mark::Hidden;
      }
    } else if (m_operandCount > 1 && m_operands[1].kind == TokenKind::DictOpen) {
      replaces = m_hasActualText;
      if (replaces) {
        replacement = std::string(m_actualText);
      }
    }
    std::u16string spoken = textOfString(replacement);
    if (mark == Mark::Plain && replaces && !hidden() && !m_words.replacing() &&
        !saysNothing(spoken)) {
      mark = Mark::Replacement;
      m_words.beginReplacement(std::move(spoken));
    }
  }
  m_hiddenMarks += mark == Mark::Hidden;
  m_marks.push_back(mark);
}

void ContentReader::endMarked() {
  const Mark mark = m_marks.back();
  m_marks.pop_back();
  if (mark == Mark::Hidden) {
    --m_hiddenMarks;
  } else if (mark == Mark::Replacement) {
    m_words.endReplacement();
  }
}

} // namespace glyphrun
