// Any bytes as the document that tells of the newest version.
#include "fuzz/Targets.h"
#include "updates/UpdateOffer.h"
#include "updates/VersionNumber.h"

#include <QUrl>

#include <algorithm>

namespace fuzzing {

void runUpdateDocument(const QByteArray& input) {
  folivex::UpdateOffer offer;
  if (!folivex::readOffer(input, offer).isEmpty()) {
    require(offer == folivex::UpdateOffer());
    return;
  }
  require(folivex::VersionNumber::read(offer.version).has_value());
  require(offer.page.isEmpty() || QUrl(offer.page).scheme() == u"https");
  require(offer.note.size() <= 1000 && std::ranges::none_of(offer.note, [](QChar c) {
            return c.category() == QChar::Other_Control && c != u'\n';
          }));
  const folivex::UpdateResult result = folivex::resultOf(offer, QStringLiteral("4.1.0-rc.2"));
  require(result.outcome != folivex::UpdateOutcome::Failed && !result.text.isEmpty());
}

} // namespace fuzzing
