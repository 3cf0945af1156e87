#include "scanlite/BarcodeFinder.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace scanlite {

namespace {

constexpr int linesOfChecked = 3;
constexpr int linesOfWeak = 8;
constexpr size_t lettersOfWeak = 3;
// A text that is read far more often than the other one at its place is not put in doubt by it.
constexpr int linesAgainstOne = 20;
// Millimetres. What a reader gives of bars may be as flat as the line that it read.
constexpr double nearby = 4;
constexpr long mostPixelsToEnlarge = 4'000'000;

/// All that was read as one text in one place.
struct Candidate {
  Reading best; ///< lines: the most that one reader saw at once
  unsigned readers = 0;

  bool isSure() const {
    constexpr unsigned both = unsigned(Reader::ZXing) | unsigned(Reader::ZBar);
    switch (best.symbology) {
    case Symbology::Matrix:
      return true;
    case Symbology::Checked:
      return readers == both || best.lines >= linesOfChecked;
    case Symbology::Weak:
      return best.text.size() >= lettersOfWeak &&
             (readers == both ? best.lines > 1 : best.lines >= linesOfWeak);
    }
    return false;
  }

  /// Print that looks like bars along one line is none.
  bool isSerious() const {
    return best.text.size() >= lettersOfWeak &&
           (best.symbology != Symbology::Weak || best.lines > 1 || isSure());
  }

  bool outweighs(const Candidate& other) const {
    // Bars are seen in the squares of a symbol, never the other way round.
    if (best.symbology == Symbology::Matrix || other.best.symbology == Symbology::Matrix) {
      return best.symbology == Symbology::Matrix && other.best.symbology != Symbology::Matrix;
    }
    return best.lines >= linesAgainstOne * std::max(1, other.best.lines);
  }
};

class Candidates {
public:
  explicit Candidates(double pixelsPerMillimetre)
      : m_nearby(static_cast<int>(std::lround(nearby * pixelsPerMillimetre))) {}

  void add(const Reading& reading) {
    if (reading.text.empty()) {
      return;
    }
    for (Candidate& candidate : m_candidates) {
      if (candidate.best.text == reading.text &&
          candidate.best.box.grownBy(m_nearby).meets(reading.box.grownBy(m_nearby))) {
        candidate.best.box = candidate.best.box.with(reading.box);
        candidate.best.lines = std::max(candidate.best.lines, reading.lines);
        candidate.readers |= unsigned(reading.reader);
        return;
      }
    }
    m_candidates.push_back({reading, unsigned(reading.reader)});
  }

  std::vector<Barcode> sure() const {
    std::vector<Barcode> barcodes;
    for (const Candidate& candidate : m_candidates) {
      const auto contradicts = [&](const Candidate& other) {
        return &other != &candidate && isOnePlace(other.best.box, candidate.best.box) &&
               !candidate.outweighs(other);
      };
      if (candidate.isSure() &&
          std::none_of(m_candidates.begin(), m_candidates.end(), contradicts)) {
        barcodes.push_back({candidate.best.kind, candidate.best.text, candidate.best.box});
      }
    }
    return barcodes;
  }

  bool hasDoubtful() const {
    const std::vector<Barcode> found = sure();
    return std::any_of(m_candidates.begin(), m_candidates.end(), [&](const Candidate& candidate) {
      return candidate.isSerious() &&
             std::none_of(found.begin(), found.end(), [&](const Barcode& barcode) {
               return isOnePlace(barcode.box, candidate.best.box);
             });
    });
  }

  bool hasSureIn(const PixelBox& box) const {
    const std::vector<Barcode> found = sure();
    return std::any_of(found.begin(), found.end(),
                       [&](const Barcode& barcode) { return barcode.box.meets(box); });
  }

private:
  bool isOnePlace(const PixelBox& one, const PixelBox& other) const {
    return one.grownBy(m_nearby).hasMiddleOf(other) || other.grownBy(m_nearby).hasMiddleOf(one);
  }

  int m_nearby;
  std::vector<Candidate> m_candidates;
};

/// What a reader gave, its text as people see it: UPC-A, which is an EAN-13 with a 0 before it, has
/// its 12 digits; control characters (the separators of GS1, the lines of a visiting card) are
/// blanks, none of them at the ends.
Reading asPrinted(Reading reading) {
  constexpr size_t digitsOfEan = 13;
  if (reading.kind == std::string_view("EAN-13") && reading.text.size() == digitsOfEan &&
      reading.text[0] == '0') {
    reading.kind = "UPC-A";
    reading.text.erase(0, 1);
  }
  std::string words;
  for (const char character : reading.text) {
    const bool isBlank = (character >= 0 && character <= ' ') || character == '\x7f';
    if (!isBlank || (!words.empty() && words.back() != ' ')) {
      words += isBlank ? ' ' : character;
    }
  }
  if (!words.empty() && words.back() == ' ') {
    words.pop_back();
  }
  reading.text = words;
  return reading;
}

} // namespace

FoundBarcodes findBarcodes(const GreyPicture& page, double pixelsPerMillimetre,
                           const ReaderStep& step) {
  Candidates candidates(pixelsPerMillimetre);
  int number = 0;
  const auto read = [&](auto reader, const GreyPicture& picture, int left, int top, int scale) {
    // Readers are not made for pictures without an inside.
    constexpr int smallestSide = 8;
    if (!step(number++) || picture.width < smallestSide || picture.height < smallestSide) {
      return;
    }
    for (Reading reading : reader(picture)) {
      reading = asPrinted(std::move(reading));
      reading.box = {left + reading.box.left / scale, top + reading.box.top / scale,
                     left + (reading.box.right + scale - 1) / scale,
                     top + (reading.box.bottom + scale - 1) / scale};
      candidates.add(reading);
    }
  };
  read(readWithZXing, page, 0, 0, 1);
  for (const PixelBox& patch : darkPatches(page, pixelsPerMillimetre)) {
    const GreyPicture part = page.part(patch);
    const int left = std::max(0, patch.left);
    const int top = std::max(0, patch.top);
    read(readWithZXing, part, left, top, 1);
    read(readWithZBar, part, left, top, 1);
    if (!candidates.hasSureIn(patch) &&
        static_cast<long>(part.width) * part.height <= mostPixelsToEnlarge) {
      const GreyPicture large = part.enlarged();
      read(readWithZXing, large, left, top, 2);
      read(readWithZBar, large, left, top, 2);
    }
  }
  return {candidates.sure(), candidates.hasDoubtful()};
}

} // namespace scanlite
