// Joining: a part at the end of the receiving document, in memory.
#pragma once

#include "Document.h"
#include "Transplant.h"
#include "pages/Entries.h"
#include "pages/NamedDestinations.h"

#include <string>
#include <vector>

namespace melder {

/// One append at work.
struct Joining {
  Document& receiver;
  Document& part;
  Transplant& transplant;
  pages::NamedDestinations names{part.catalog(), part.pages()}; ///< of the part

  /// A dictionary of the receiving document that is an object of its own.
  [[nodiscard]] QPDFObjectHandle newObject() {
    return receiver.pdf().makeIndirectObject(QPDFObjectHandle::newDictionary());
  }
  /// A name or number tree of keys and values in the order of the keys; a broken one is gone then.
  void setTree(QPDFObjectHandle owner, const char* key, const char* leaves,
               const std::vector<QPDFObjectHandle>& entries) {
    auto tree = newObject();
    tree.replaceKey(leaves, QPDFObjectHandle::newArray(entries));
    owner.replaceKey(key, tree);
  }
};

/// Adds the pages of the part to the end of the receiving document, with what leads to them and
/// what is said about them. Throws common::Failure when objects of a damaged part are missing.
void join(Document& receiver, Document& part, Transplant& transplant);

// Its steps, in their order; the pages are copied between the fields and the outline.

/// Takes the part's layers over; one that equals a layer that is there and shows as that one does
/// is the same layer.
void joinLayers(Joining& joining);

/// Places the fonts, images and so on of the part that the first and the last pages of the
/// receiving document, or its form, draw with already: parts of one source bring the same ones each
/// time. A look at so few pages costs the same however long the file is.
void placeKnownResources(Joining& joining);

/// Destinations whose name is taken get another one, and so do the links that lead to them.
void joinDestinations(Joining& joining);

/// Takes the part's form fields over. A field whose name is taken gets another one, so that filling
/// in one never fills in the other.
void joinFields(Joining& joining);

/// The part's bookmarks behind those of the receiving document.
void joinOutline(Joining& joining);

/// Leaves of the receiving document's claims of standards those that the pages of the part keep,
/// too; with them it is no longer tagged throughout.
void joinClaims(Joining& joining);

/// Whether an object of the part and one of the receiving document are equal with all below them.
[[nodiscard]] bool areEqual(const Joining& joining, const QPDFObjectHandle& part,
                            const QPDFObjectHandle& known);

/// Pages without labels are numbered by their place if others have labels.
void joinLabels(Joining& joining);

/// The dictionary below a key, made where there is none.
[[nodiscard]] inline QPDFObjectHandle dictionaryBelow(QPDFObjectHandle owner,
                                                      const std::string& key) {
  QPDFObjectHandle found = owner.getKey(key);
  return found.isDictionary() ? found
                              : owner.replaceKeyAndGetNew(key, QPDFObjectHandle::newDictionary());
}

/// The array below a key, made where there is none.
[[nodiscard]] inline QPDFObjectHandle arrayBelow(QPDFObjectHandle owner, const std::string& key) {
  QPDFObjectHandle found = owner.getKey(key);
  return found.isArray() ? found : owner.replaceKeyAndGetNew(key, QPDFObjectHandle::newArray());
}

} // namespace melder
