// SetupMaker: setups for documents that begin on certain pages and are named after a value.
#pragma once

#include "engine/suggest/Beginnings.h"
#include "engine/suggest/Candidate.h"

namespace folivex {

/// Makes the setups of one set of beginnings, the plainest first.
class SetupMaker {
public:
  SetupMaker(const PageSample& sample, const PageNumbers& numbers, const SplitSetup& base,
             const Beginnings& beginnings);

  /// The value stands on all pages and changes where documents begin.
  std::vector<Candidate> ofRun(const ValuePlace& value) const;
  /// The value stands where documents begin.
  std::vector<Candidate> ofValue(const ValuePlace& value) const;
  std::vector<Candidate> ofBookmarks() const;
  /// Named after their pages.
  std::vector<Candidate> unnamed() const;

private:
  struct Reason {
    QString before; ///< the number of documents
    QString behind;
  };

  Candidate candidate(const SplitSetup& setup, const Reason& reason,
                      const std::vector<QString>& names) const;
  std::vector<SplitSetup> beginSetups() const;
  SplitSetup atPlaceOf(const ValuePlace& value, bool unique) const;
  bool canStandIn(const QString& text) const;
  QString labelOf(const ValuePlace& value) const;
  Reason begins(const SplitSetup& setup, const QString& andNamed) const;
  void nameAfterText(const ValuePlace& value, SplitSetup setup, std::vector<Candidate>& made) const;
  void nameByPlace(const ValuePlace& value, SplitSetup setup, std::vector<Candidate>& made) const;

  const PageSample& m_sample;
  const PageNumbers& m_numbers;
  SplitSetup m_base;
  const Beginnings& m_beginnings;
};

} // namespace folivex
