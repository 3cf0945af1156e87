// The addresses of a page with any words. Each one is whole, harmless, and made of letters that
// stand on the page one behind the other.
//
// An input is a line of numbers (the windows), the texts before and behind the address, and the
// page: a line of words each v, words between blanks, a tab for the gap of a column.
#include "fuzz/Targets.h"
#include "mail/AddressSearch.h"
#include "mail/MailAddress.h"

namespace fuzzing {

namespace {

constexpr int glyphWidth = 5;
constexpr int columnWidth = 200;
constexpr int lineHeight = 12;

folivex::AddressRules rulesOf(const QByteArrayList& lines) {
  const QByteArrayList numbers = lines.value(0).split(' ');
  const auto number = [&numbers](qsizetype index) {
    bool isThere = false;
    const int value = numbers.value(index).toInt(&isThere);
    return isThere ? value : -1;
  };
  return {number(0),
          number(1),
          number(2),
          number(3),
          QString::fromUtf8(lines.value(1)),
          QString::fromUtf8(lines.value(2)),
          number(4) > 0};
}

/// Hands the words over, and returns their letters.
QString addWords(folivex::AddressSearch& search, const QByteArrayList& lines) {
  QString letters;
  int v = lineHeight;
  for (const QByteArray& line : lines) {
    int h = 0;
    for (const QString& column : QString::fromUtf8(line).split(u'\t')) {
      for (const QString& word : column.split(u' ', Qt::SkipEmptyParts)) {
        search.add({word, h, v});
        letters += word.left(folivex::maxWordLength);
        h += static_cast<int>(word.size() + 1) * glyphWidth;
      }
      h += columnWidth;
    }
    v += lineHeight;
  }
  return letters;
}

} // namespace

void runAddresses(const QByteArray& input) {
  const QByteArrayList lines = input.split('\n');
  folivex::AddressSearch search(rulesOf(lines));
  search.startPage();
  const QString letters = addWords(search, lines.mid(3));
  const folivex::AddressReader::Found found = search.find();
  require(found.further.size() <= folivex::maxFurtherAddresses);
  QStringList mailboxes;
  for (const QString& address : QStringList(found.address) + found.further) {
    if (!address.isEmpty()) {
      require(folivex::isMailAddress(address, folivex::MailDomain::Public));
      require(letters.contains(address));
      require(!mailboxes.contains(folivex::comparableAddress(address)));
      mailboxes += folivex::comparableAddress(address);
    }
  }
  require(!found.address.isEmpty() || found.further.isEmpty());
}

} // namespace fuzzing
