#include "ObjectCache.h"

namespace cleftor {

namespace {

/// Beyond this, forgetting which objects were seen costs less than remembering them.
constexpr size_t mostSeen = 100'000;

size_t weight(const CopiedObject& object) {
  return sizeof(CopiedObject) + object.body.bytes().size() + object.data.size() +
         object.body.references().size() * sizeof(Fragment::Reference);
}

} // namespace

const CopiedObject* ObjectCache::find(QPDFObjGen object) const {
  const auto found = m_kept.find(object);
  return found == m_kept.end() ? nullptr : found->second.get();
}

bool ObjectCache::isWanted(QPDFObjGen object) {
  if (m_seen.size() >= mostSeen) {
    m_seen.clear();
  }
  return !m_seen.insert(object).second;
}

void ObjectCache::keep(QPDFObjGen object, CopiedObject&& copied) {
  const size_t added = weight(copied);
  if (added > room) {
    return;
  }
  if (m_used + added > room) {
    m_kept.clear();
    m_used = 0;
  }
  m_used += added;
  m_kept.insert_or_assign(object, std::make_unique<CopiedObject>(std::move(copied)));
}

} // namespace cleftor
