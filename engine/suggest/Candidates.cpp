#include "engine/suggest/Candidates.h"

#include "engine/suggest/MailPlace.h"
#include "engine/suggest/SetupMaker.h"

#include <algorithm>

namespace folivex {

namespace {

constexpr std::size_t mostBeginningsTried = 6;
constexpr std::size_t mostValuesTried = 4;

/// Enough to say so without a doubt, and to say so at all; found by trial over piles of many kinds.
constexpr double sureEvidence = 5;
constexpr double leastEvidence = 1;
/// Of a value, for names that nobody has to look at.
constexpr double goodName = 1.9;

class CandidateList {
public:
  CandidateList(const PageSample& sample, const PageNumbers& numbers)
      : m_sample(sample), m_numbers(numbers) {}

  void add(const Beginnings& beginnings, const SplitSetup& base);
  std::vector<Candidate> take();

private:
  void addFamily(std::vector<Candidate> made, double worth, bool isWellNamed = true);

  const PageSample& m_sample;
  const PageNumbers& m_numbers;
  const Beginnings* m_beginnings = nullptr;
  std::vector<Candidate> m_all;
  int m_family = 0;
};

void CandidateList::addFamily(std::vector<Candidate> made, double worth, bool isWellNamed) {
  ++m_family;
  for (Candidate& candidate : made) {
    candidate.family = m_family;
    candidate.worth = worth;
    candidate.mayBeSure = isWellNamed && m_beginnings->evidence >= sureEvidence &&
                          m_beginnings->kindsOfEvidence > 1 && !m_numbers.runThrough;
    m_all.push_back(std::move(candidate));
  }
}

void CandidateList::add(const Beginnings& beginnings, const SplitSetup& base) {
  const SetupMaker maker(m_sample, m_numbers, base, beginnings);
  m_beginnings = &beginnings;
  const double evidence = beginnings.evidence;
  const auto addBest = [&](const std::vector<ValuePlace>& values, auto make) {
    for (std::size_t i = 0; i < std::min(values.size(), mostValuesTried); ++i) {
      const bool isGood = values[i].worth >= goodName;
      const double naming = isGood ? values[i].worth : values[i].worth - goodName;
      addFamily(make(values[i]), evidence + 0.5 * naming, isGood);
    }
  };
  if (beginnings.byBookmarks) {
    addFamily(maker.ofBookmarks(), evidence + 1.5);
  }
  addBest(beginnings.runs, [&](const ValuePlace& value) { return maker.ofRun(value); });
  addBest(beginnings.values, [&](const ValuePlace& value) { return maker.ofValue(value); });
  addFamily(maker.unnamed(), evidence);
}

std::vector<Candidate> CandidateList::take() {
  std::stable_sort(m_all.begin(), m_all.end(),
                   [](const Candidate& a, const Candidate& b) { return a.worth > b.worth; });
  return std::move(m_all);
}

} // namespace

void fillMailSearch(const PageSample& sample, Candidate& candidate) {
  const std::optional<MailPlace> place = findMailPlace(sample, candidate.firstPages);
  if (!place) {
    return;
  }
  SplitSetup& setup = candidate.setup;
  setup.emailMatchVert = place->v.low;
  setup.emailMatchVertTo = place->v.high;
  setup.emailMatchHorizFrom = place->h.low;
  setup.emailMatchHorizTo = place->h.high;
  setup.emailHorizAfterText.clear();
  setup.emailHorizBeforeText.clear();
  candidate.furtherReason += QStringLiteral("; each has an e-mail address near h %1 v %2")
                                 .arg(place->h.low)
                                 .arg(place->v.low);
}

std::vector<Candidate> findCandidates(const PageSample& sample, const SplitSetup& base) {
  const PageNumbers numbers = findPageNumbers(sample);
  CandidateList list(sample, numbers);
  const std::vector<Beginnings> all = findBeginnings(sample, numbers);
  for (std::size_t i = 0; i < std::min(all.size(), mostBeginningsTried); ++i) {
    if (all[i].evidence >= leastEvidence) {
      list.add(all[i], base);
    }
  }
  return list.take();
}

} // namespace folivex
