// Walks the operators of a page's content and feeds the glyphs that it shows to the word assembler.
#pragma once

#include "ContentLexer.h"
#include "FontLoader.h"
#include "Geometry.h"
#include "PdfObject.h"
#include "SharedContent.h"
#include "WordAssembler.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace glyphrun {

/// What one page may cost. Counts, not seconds: the same file gives the same words everywhere.
struct PageLimits {
  std::size_t operators = 20'000'000;
  std::size_t glyphs = 1'000'000;
  std::size_t contentBytes = std::size_t{256} << 20;
  int formDepth = 28;
};

/// Reads the content of one page after the other. Only text, state, matrix and form operators
/// matter.
class ContentReader {
public:
  ContentReader(MuContext& mu, StreamReader& streams, FontCache& fonts, LayerVisibility& layers,
                WordAssembler& words);

  void beginPage(const PageLimits& limits);
  /// Runs a content stream in the coordinates given by `matrix` (content to shown page).
  void runContent(std::string_view content, const PdfObject& resources, const Matrix& matrix);
  /// Draws a form XObject as an annotation's appearance.
  void runForm(const PdfObject& form, const PdfObject& resources, const Matrix& matrix);
  /// Counts bytes of content against the page's limit; false when they are too many.
  bool spend(std::size_t bytes);
  std::size_t bytesLeft() const { return m_bytesLeft; }

  /// True when a limit was reached or content could not be read in full.
  bool damaged() const { return m_damaged; }
  void setDamaged() { m_damaged = true; }

private:
  struct TextState {
    Font* font = nullptr;
    double size = 0;
    double charSpace = 0;
    double wordSpace = 0;
    double scale = 1;
    double leading = 0;
    double rise = 0;
  };
  struct State {
    Matrix matrix;
    TextState text;
  };
  struct Frame {
    PdfObject resources;
    std::vector<std::pair<std::string, Font*>> fonts;
    std::size_t statesBelow = 0;
    std::size_t marksBelow = 0;
  };
  /// What a text-showing operator shows, as far as letter-spacing asks.
  struct ShownPieces {
    std::size_t longest = 0; ///< bytes that follow one another without an adjustment to speak of
    bool leader = false;
    bool compensated = false; ///< an adjustment takes the letter-spacing back
  };
  enum class Mark : std::uint8_t { Plain, Hidden, Replacement };

  void execute(ContentLexer& lexer);
  void handleOperator(std::uint32_t key, ContentLexer& lexer);
  void readArray(ContentLexer& lexer);
  void readDictionary(ContentLexer& lexer);

  double number(std::size_t index) const;
  std::string_view text(std::size_t index, TokenKind kind) const;

  void save();
  void restore();
  void selectFont();
  void applyGraphicsState();
  void moveLine(double x, double y);
  void showString(std::string_view bytes);
  void showArray();
  void startRun(const ShownPieces& pieces);
  void beginSpaced(GlyphRun& run, const ShownPieces& pieces);
  bool isLeader(std::string_view bytes) const;
  bool standsBefore(const Font& font, const CodeInfo& info);
  template <bool OneByte> void showGlyphs(std::string_view bytes);
  void showAdjustment(double thousandths);
  void finishRun();
  void drawXObject(std::string_view name);
  void beginMarked(bool withProperties);
  void endMarked();
  bool hidden() const { return m_hiddenMarks > 0; }

  MuContext& m_mu;
  FontCache& m_fonts;
  LayerVisibility& m_layers;
  WordAssembler& m_words;
  FormCache m_forms;

  State m_state;
  std::vector<State> m_states;
  std::size_t m_unsavedStates = 0;
  Matrix m_textMatrix;
  Matrix m_lineMatrix;
  std::vector<Frame> m_frames;
  std::vector<int> m_openForms;
  std::vector<Mark> m_marks;
  std::size_t m_hiddenMarks = 0;

  static constexpr std::size_t mostOperands = 64;
  // The token behind the operands is the one that is being looked at.
  std::array<Token, mostOperands + 1> m_operands;
  std::size_t m_operandCount = 0;
  std::vector<Token> m_array;
  bool m_hasActualText = false;
  std::string_view m_actualText;

  std::u16string m_cluster; ///< text of the last glyph, when it is of several characters
  std::size_t m_clusterGlyphs = SIZE_MAX; ///< that stand for it so far
  CodeInfo m_silent;

  // Of the run being shown.
  double m_pen = 0;            ///< along the direction, from the run's origin
  double m_unit = 0;           ///< points along the direction for one unit of text space
  double m_textShift = 0;      ///< the same pen in text space
  double m_spacing = 0;        ///< letter-spacing, in points along the direction
  double m_lastSpacing = 0;    ///< of the run before
  bool m_spacingParts = false; ///< it is a gap, not letter-spacing
  bool m_spacingOpen = false;  ///< it is one or the other behind the run
  bool m_lastSpacingOpen = false;
  bool m_emits = false;

  std::size_t m_operatorsLeft = 0;
  std::size_t m_glyphsAllowed = 0;
  std::size_t m_glyphsShown = 0;
  std::size_t m_bytesLeft = 0;
  std::size_t m_textOperators = 0;
  int m_formDepth = 0;
  bool m_damaged = false;
  bool m_stopped = false;
};

} // namespace glyphrun
