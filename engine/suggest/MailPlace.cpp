#include "engine/suggest/MailPlace.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace folivex {

namespace {

constexpr std::size_t mostDocuments = 250;
constexpr std::size_t mostOnPage = 10;
constexpr int farthestAddress = 60; ///< that one may stand from another document's

using Addresses = std::vector<SampleWord>;

Addresses addressesOn(const PageSample& sample, int page) {
  Addresses found;
  for (const SampleWord& word : sample.page(page)) {
    const QStringView text = sample.text(word.text);
    if (text.indexOf(u'@') > 0 && text.lastIndexOf(u'.') > text.indexOf(u'@') &&
        found.size() < mostOnPage) {
      found.push_back(word);
    }
  }
  return found;
}

int distance(const SampleWord& a, const SampleWord& b) {
  return std::abs(a.v - b.v) + std::abs(a.rawH - b.rawH);
}

/// The place of those that stand nearest to where the first document has this one.
std::optional<MailPlace> placeAround(const SampleWord& seed, const std::vector<Addresses>& pages) {
  MailPlace place;
  std::set<TextId> texts;
  for (const Addresses& page : pages) {
    const auto nearest =
        std::min_element(page.begin(), page.end(), [&](const SampleWord& a, const SampleWord& b) {
          return distance(a, seed) < distance(b, seed);
        });
    if (nearest == page.end() || distance(*nearest, seed) > farthestAddress) {
      return std::nullopt;
    }
    texts.insert(nearest->text);
    place.h.reach(nearest->rawH);
    place.v.reach(nearest->v);
  }
  const auto isIn = [&](const SampleWord& word) {
    return place.h.holds(word.rawH) && place.v.holds(word.v);
  };
  const bool isOnlyOne = std::all_of(pages.begin(), pages.end(), [&](const Addresses& page) {
    return std::count_if(page.begin(), page.end(), isIn) == 1;
  });
  const bool nearlyAllDiffer = texts.size() * 5 >= pages.size() * 4 && texts.size() > 1;
  return isOnlyOne && nearlyAllDiffer ? std::optional(place) : std::nullopt;
}

} // namespace

std::optional<MailPlace> findMailPlace(const PageSample& sample,
                                       const std::vector<int>& firstPages) {
  std::vector<Addresses> pages;
  for (std::size_t i = 0; i < std::min(firstPages.size(), mostDocuments); ++i) {
    pages.push_back(addressesOn(sample, firstPages[i]));
  }
  if (!pages.empty()) {
    for (const SampleWord& seed : pages.front()) {
      if (const auto place = placeAround(seed, pages)) {
        return place;
      }
    }
  }
  return std::nullopt;
}

} // namespace folivex
