#include "engine/suggest/LabelValues.h"

#include "engine/suggest/LineText.h"

#include "engine/suggest/ValueWorth.h"

#include <QRegularExpression>

#include <algorithm>
#include <unordered_map>

namespace folivex {

namespace {

struct LabelHash {
  std::size_t operator()(const Label& label) const {
    return std::hash<std::uint64_t>()(std::uint64_t{label.before} << 32U | label.text);
  }
};

const SampleWord* nextToTheRight(std::span<const SampleWord> words, std::size_t of) {
  const SampleWord& label = words[of];
  const SampleWord* found = nullptr;
  const auto look = [&](const SampleWord& word) {
    if (word.rawH > label.rawH && (found == nullptr || word.rawH < found->rawH)) {
      found = &word;
    }
  };
  for (std::size_t i = of; i-- > 0 && words[i].v >= label.v - unevenPrint;) {
    look(words[i]);
  }
  for (std::size_t i = of + 1; i < words.size() && words[i].v <= label.v + unevenPrint; ++i) {
    look(words[i]);
  }
  return found;
}

/// What stands behind one label, page by page.
struct Behind {
  ValuePlace next;
  ValuePlace line;
  ValuePlace beside;

  Behind(const Label& label, std::size_t pages) {
    next.kind = ValuePlace::Kind::BehindLabel;
    next.label = label.text;
    next.before = label.before;
    next.texts.resize(pages);
    line = beside = next;
    beside.kind = ValuePlace::Kind::BesideLabel;
  }

  /// The label is the word `i`, and another word follows.
  void take(const PageSample& sample, std::size_t page, std::span<const SampleWord> words,
            std::size_t i) {
    if (!next.texts[page].isEmpty()) {
      return; // the first on the page counts
    }
    const auto add = [&](ValuePlace& place, const SampleWord& value) {
      place.reach(value);
      place.texts[page] = sample.text(value.text).toString();
    };
    next.labelH.reach(words[i].h);
    next.labelV.reach(words[i].v);
    next.step.reach(words[i + 1].v - words[i].v);
    const std::size_t begin = next.before != noText && !beginsLine(words, i) ? i - 1 : i;
    const bool isHeadline = beginsLine(words, begin);
    next.aside.reach(isHeadline ? 0 : words[i + 1].rawH - words[begin].rawH);
    add(next, words[i + 1]);
    if (const SampleWord* const right = nextToTheRight(words, i)) {
      add(beside, *right);
    }
    line.texts[page] = lineFrom(sample, words.subspan(i + 1), line.lineEndsBefore);
  }
};

bool isAddress(const QString& word) {
  static const QRegularExpression address(
      QStringLiteral("@|://|^www\\.|^[\\w-]+(\\.[\\w-]+)*\\.[a-z]{2,}(/.*)?$"));
  return address.match(word).hasMatch();
}

} // namespace

bool isPlausible(const PageSample& sample, const Label& label) {
  const QStringView last = sample.text(label.text);
  const QStringView before = label.before == noText ? QStringView() : sample.text(label.before);
  const auto says = [](QStringView word) {
    const QStringView numberSigns = u"#№";
    return std::any_of(word.begin(), word.end(), [&](QChar c) {
      return c.isLetter() || c.isSurrogate() || numberSigns.contains(c);
    });
  };
  const auto isOwnValue = [](QStringView word) {
    return hasDigit(word) || isAddress(word.toString());
  };
  return (says(last) || says(before)) && !isOwnValue(last) && !isOwnValue(before);
}

std::vector<ValuePlace> valuesBehind(const PageSample& sample, const std::vector<int>& pages,
                                     const std::vector<Label>& labels) {
  std::vector<Behind> all;
  std::unordered_map<Label, std::size_t, LabelHash> indexOf;
  for (const Label& label : labels) {
    indexOf.emplace(label, all.size());
    all.emplace_back(label, pages.size());
  }
  for (std::size_t page = 0; page < pages.size(); ++page) {
    const std::span<const SampleWord> words = sample.page(pages[page]);
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
      for (const TextId before : {noText, i > 0 ? words[i - 1].text : noText}) {
        if (const auto found = indexOf.find({words[i].text, before}); found != indexOf.end()) {
          all[found->second].take(sample, page, words, i);
        }
      }
    }
  }
  std::vector<ValuePlace> values;
  for (Behind& behind : all) {
    if (behind.line.texts != behind.next.texts) {
      values.push_back(behind.next);
      values.back().kind = ValuePlace::Kind::LineOfLabel;
      values.back().texts = std::move(behind.line.texts);
      values.back().lineEndsBefore = behind.line.lineEndsBefore;
    }
    if (behind.beside.texts != behind.next.texts) {
      values.push_back(std::move(behind.beside));
    }
    values.push_back(std::move(behind.next));
  }
  return values;
}

} // namespace folivex
