#include "pages/Claims.h"

#include "Joining.h"

namespace melder {

namespace {

/// Colours that mean what the device makes of them are told by the intents: both must tell the
/// same.
bool shareIntents(Joining& joining) {
  QPDFObjectHandle added = joining.part.catalog().getKey("/OutputIntents");
  return added.isNull() ||
         areEqual(joining, added, joining.receiver.catalog().getKey("/OutputIntents"));
}

} // namespace

void joinClaims(Joining& joining) {
  QPDFObjectHandle catalog = joining.receiver.catalog();
  if (QPDFObjectHandle marks = catalog.getKey("/MarkInfo"); marks.isDictionary()) {
    marks.removeKey("/Marked");
  }
  pages::Claims claims(catalog);
  const pages::Claims added(joining.part.catalog());
  claims.limitTo(added);
  claims.dropTagged();
  if (joining.receiver.pdf().isEncrypted() || !shareIntents(joining)) {
    claims.dropArchival();
  }
  claims.dropAccessible();
  claims.dropBeyondPages();
  if (!claims.isChanged()) {
    return;
  }
  if (claims.text().empty()) {
    catalog.removeKey("/Metadata");
    return;
  }
  QPDFObjectHandle metadata = joining.receiver.pdf().newStream(claims.text());
  metadata.getDict().replaceKey("/Type", QPDFObjectHandle::newName("/Metadata"));
  metadata.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/XML"));
  catalog.replaceKey("/Metadata", metadata);
}

} // namespace melder
