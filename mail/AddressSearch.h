// AddressSearch: the e-mail addresses on one page.
#pragma once

#include "engine/output/PageAddresses.h"

#include <functional>
#include <memory>
#include <vector>

namespace folivex {

struct SplitSetup;

/// Where on a page an address may stand. Positions are the text library's points; -1 is open.
struct AddressRules {
  int verticalFrom = -1;
  int verticalTo = -1;
  int horizontalFrom = -1;
  int horizontalTo = -1;
  QString afterText = {};  ///< the address stands behind this text on its line; empty: anywhere
  QString beforeText = {}; ///< and in front of this one
  bool ignoreCase = false; ///< A-Z and a-z are one in the two texts

  static AddressRules of(const SplitSetup& setup);
};

inline constexpr qsizetype maxFurtherAddresses = 50;

/// Takes the words of a page one by one in their list order (reading order) and then tells the
/// addresses among them. Keeps copies: the word's text need not live on.
///
/// A word with "@" inside the windows is a candidate. An address that a page draws in pieces
/// ("anna", "@", "example.org") is put together without blanks from the candidate and the words
/// around it with the same v, at most 255 on either side; a piece is taken only while the address
/// is not complete without it, and never over a gap that no blank has. Where a name or a domain
/// breaks off and nobody can tell what belongs to it, there is no address: none is better than a
/// wrong one. The texts before and after are looked for among all words of the line, as many of
/// them, joined by one blank, whatever the horizontal window.
///
/// Time and memory grow with the number of words, whatever stands on the page.
class AddressSearch : public AddressReader {
public:
  explicit AddressSearch(AddressRules rules);

  /// Forgets the words of the page before.
  void startPage();
  void add(const PageWord& word);
  /// Called before each word that is looked at.
  std::function<void()> handlePendingEvents;
  /// The first good address, and the other ones in reading order, each once, maxFurtherAddresses
  /// of them at most.
  Found find() const;
  /// All of it for one page.
  Found read(WordSource& words) override;

private:
  class Page;
  struct Word {
    qsizetype start = 0; ///< in m_text
    qsizetype length = 0;
    int h = 0;
    int v = 0;
    bool hasAt = false;
  };

  AddressRules m_rules;
  QString m_text;
  std::vector<Word> m_words;
};

/// With the windows and texts of this setup.
std::unique_ptr<AddressReader> addressReaderFor(const SplitSetup& setup);

} // namespace folivex
