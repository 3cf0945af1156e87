#include "ObjectCache.h"

namespace cleftor {

namespace {

/** Beyond this, forgetting which objects were seen costs less than remembering them. */
constexpr size_t mostSeen = 100'000;

size_t weight(const CopiedObject& object) {
  return sizeof(CopiedObject) + object.body.bytes().size() + object.data.size() +
         object.body.references().size() * sizeof(Fragment::Reference);
}

} // namespace

const CopiedObject* ObjectCache::find(QPDFObjGen object) const {
  const auto found = kept_.find(object);
  return found == kept_.end() ? nullptr : found->second.get();
}

bool ObjectCache::isWanted(QPDFObjGen object) {
  if (seen_.size() >= mostSeen) {
    seen_.clear();
  }
  return !seen_.insert(object).second;
}

void ObjectCache::keep(QPDFObjGen object, CopiedObject&& copied) {
  const size_t added = weight(copied);
  if (added > room) {
    return;
  }
  if (used_ + added > room) {
    kept_.clear();
    used_ = 0;
  }
  used_ += added;
  kept_.insert_or_assign(object, std::make_unique<CopiedObject>(std::move(copied)));
}

} // namespace cleftor
