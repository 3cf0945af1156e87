#include "transplant.h"

#include "update.h"

#include <algorithm>
#include <set>

namespace melder {

namespace {

constexpr size_t kMostKnown = 32768;
constexpr size_t kSampledPages = 16;
constexpr size_t kSampledObjects = 4000;
constexpr size_t kSampledBytes = size_t{64} << 20;

/** Objects that stand for themselves and not for what they contain. */
bool hasIdentity(QPDFObjectHandle object) {
  return isDocumentStructure(object) || object.isDictionaryOfType("/OCG") ||
         object.isDictionaryOfType("/Annot") ||
         (object.isDictionary() && (object.hasKey("/StructParent") || object.hasKey("/FT"))) ||
         (object.isStream() &&
          (object.getDict().hasKey("/StructParent") || object.getDict().hasKey("/StructParents")));
}

} // namespace

std::optional<QPDFObjGen> SharedObjects::find(const Digest& digest) const {
  const auto found = m_known.find(digest);
  return found == m_known.end() ? std::nullopt : std::optional(found->second);
}

void SharedObjects::remember(const Digest& digest, QPDFObjGen id) {
  if (m_known.size() < kMostKnown) {
    m_known.emplace(digest, id);
  }
}

void SharedObjects::sample(const std::vector<QPDFObjectHandle>& pages) {
  std::vector<QPDFObjectHandle> waiting;
  for (size_t i = 0; i < pages.size(); ++i) {
    if (i < kSampledPages || i + kSampledPages >= pages.size()) {
      QPDFObjectHandle page = pages[i];
      QPDFObjectHandle resources = page.getKey("/Resources");
      resources.isIndirect() ? waiting.push_back(resources) : collectReferences(resources, waiting);
    }
  }
  const ObjectPrinter printer(
      [](const QPDFObjectHandle& object) { return referenceTo(object.getObjGen()); });
  std::set<QPDFObjGen> seen;
  size_t bytes = 0;
  while (!waiting.empty() && seen.size() < kSampledObjects && bytes < kSampledBytes) {
    QPDFObjectHandle object = waiting.back();
    waiting.pop_back();
    if (!seen.insert(object.getObjGen()).second || object.isNull() || hasIdentity(object)) {
      continue;
    }
    const ObjectText text = printer.whole(object);
    bytes += text.data.size() + text.body.size();
    remember(text.digest(), object.getObjGen());
    collectReferences(object, waiting);
  }
}

Transplant::Transplant(Update& update, SharedObjects& shared)
    : m_update(update), m_shared(shared), m_printer([this](const QPDFObjectHandle& object) {
        const auto moved = m_moved.find(object.getObjGen());
        return moved == m_moved.end() ? std::string("null") : referenceTo(moved->second);
      }) {}

std::string Transplant::text(const QPDFObjectHandle& value, Sharing sharing) {
  std::vector<QPDFObjectHandle> references;
  value.isIndirect() ? references.push_back(value) : collectReferences(value, references);
  moveAll(references, sharing == Sharing::Allowed);
  return m_printer.value(value);
}

DictText Transplant::entries(const QPDFObjectHandle& dictionary, Sharing sharing) {
  std::vector<QPDFObjectHandle> references;
  collectReferences(dictionary, references);
  moveAll(references, sharing == Sharing::Allowed);
  return m_printer.entries(dictionary);
}

void Transplant::moveAll(const std::vector<QPDFObjectHandle>& references, bool sharable) {
  for (const QPDFObjectHandle& reference : references) {
    move(reference, sharable);
  }
}

/** Puts the object on the path that is being worked on, unless nothing is to be moved. */
void Transplant::enter(QPDFObjectHandle object, bool sharable, std::vector<Frame>& open,
                       Places& places) {
  const QPDFObjGen id = object.getObjGen();
  if (m_moved.contains(id)) {
    return;
  }
  if (places.contains(id)) {
    // A circle: the number is needed before the contents are known.
    m_moved[id] = m_update.reserve();
    return;
  }
  if (object.isNull()) {
    ++m_dangling;
    return;
  }
  if (isDocumentStructure(object)) {
    return;
  }
  places[id] = open.size();
  Frame frame = {.object = object, .below = {}, .next = 0, .sharable = sharable};
  collectReferences(object, frame.below);
  open.push_back(std::move(frame));
}

/** Depth first with a stack of its own: a hostile part may nest deeper than ours reaches. */
void Transplant::move(const QPDFObjectHandle& object, bool sharable) {
  std::vector<Frame> open;
  Places places;
  enter(object, sharable, open, places);
  while (!open.empty()) {
    Frame& top = open.back();
    if (top.next < top.below.size()) {
      QPDFObjectHandle child = top.below[top.next++];
      enter(child, top.sharable || top.object.isStream(), open, places);
    } else {
      settle(top);
      places.erase(top.object.getObjGen());
      open.pop_back();
    }
  }
}

void Transplant::settle(const Frame& frame) {
  const QPDFObjGen from = frame.object.getObjGen();
  ObjectText text = m_printer.whole(frame.object);
  const auto early = m_moved.find(from);
  QPDFObjGen to;
  if (early != m_moved.end()) {
    to = early->second;
  } else if (frame.sharable || text.isStream) {
    const Digest digest = text.digest();
    if (const auto known = m_shared.find(digest)) {
      m_moved[from] = *known;
      return;
    }
    to = m_update.reserve();
    m_shared.remember(digest, to);
  } else {
    to = m_update.reserve();
  }
  m_moved[from] = to;
  if (text.isStream) {
    m_update.putStream(to, std::move(text.dictionary), text.data);
  } else {
    m_update.put(to, text.body);
  }
}

} // namespace melder
