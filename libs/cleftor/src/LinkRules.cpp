#include "LinkRules.h"

namespace cleftor {

namespace {

/// Chains of actions longer or deeper than this are made to exhaust stack or disk.
constexpr int deepestChain = 32;
constexpr int mostActions = 100'000;

std::string kindOf(QPDFObjectHandle action) {
  QPDFObjectHandle kind = action.getKey("/S");
  return kind.isName() ? kind.getName() : std::string();
}

/// The entry of an action that names fields or annotations, or nullptr.
const char* targetsKey(const std::string& kind) {
  if (kind == "/ResetForm" || kind == "/SubmitForm") {
    return "/Fields";
  }
  return kind == "/Hide" ? "/T" : nullptr;
}

} // namespace

bool LinkRules::leadsInside(QPDFObjectHandle destination) {
  const auto page = m_source.names().pageOfDestination(destination);
  return page && m_copier.isPlaced(m_source.pages().object(*page));
}

void LinkRules::destinationBody(Fragment& out, QPDFObjectHandle destination) {
  if (destination.isDictionary()) {
    destination = destination.getKey("/D");
  }
  if (!destination.isArray()) {
    out.resolved(destination);
    return;
  }
  const int32_t page = *m_source.names().pageOfDestination(destination);
  out.text("[");
  out.reference(m_source.pages().object(page));
  for (int i = 1; i < destination.getArrayNItems(); ++i) {
    out.value(destination.getArrayItem(i));
  }
  out.text("]");
}

bool LinkRules::writeDestination(Fragment& out, const char* key, QPDFObjectHandle destination) {
  if (!leadsInside(destination)) {
    return false;
  }
  out.text(key);
  out.separate();
  destinationBody(out, destination);
  return true;
}

/// A form's fields and a page's annotations are referred to directly or by name.
bool LinkRules::targetsAny(QPDFObjectHandle targets) {
  if (!targets.isArray()) {
    return !targets.isIndirect() || !targets.isDictionary() ||
           m_copier.isPlaced(targets.getObjGen());
  }
  for (int i = 0; i < targets.getArrayNItems(); ++i) {
    QPDFObjectHandle target = targets.getArrayItem(i);
    if (!target.isDictionary() || m_copier.isPlaced(target.getObjGen())) {
      return true;
    }
  }
  return false;
}

void LinkRules::writeTargets(Fragment& out, QPDFObjectHandle targets) {
  if (!targets.isArray()) {
    out.value(targets);
    return;
  }
  out.text("[");
  for (int i = 0; i < targets.getArrayNItems(); ++i) {
    QPDFObjectHandle target = targets.getArrayItem(i);
    if (!target.isDictionary() || m_copier.isPlaced(target.getObjGen())) {
      out.value(target);
    }
  }
  out.text("]");
}

/// Whether an action still means something in the range, whatever follows it.
bool LinkRules::staysAlone(QPDFObjectHandle action) {
  const std::string kind = kindOf(action);
  if (kind == "/GoTo") {
    return leadsInside(action.getKey("/D"));
  }
  // An article thread runs through pages of the whole document.
  if (kind == "/Thread") {
    return action.hasKey("/F");
  }
  const char* const key = targetsKey(kind);
  return key == nullptr || !action.hasKey(key) || targetsAny(action.getKey(key));
}

bool LinkRules::needsRewriting(QPDFObjectHandle action) {
  const std::string kind = kindOf(action);
  return kind == "/GoTo" || kind == "/Thread" || targetsKey(kind) != nullptr ||
         action.hasKey("/Next");
}

void LinkRules::actionEntries(Fragment& out, QPDFObjectHandle action, const std::string& kind) {
  const char* const targets = targetsKey(kind);
  for (auto& [key, value] : action.getDictAsMap()) {
    // A structure destination may lead to an element that stays behind; the page serves as well.
    if (value.isNull() || key == "/Next" || (kind == "/GoTo" && key == "/SD")) {
      continue;
    }
    out.name(key);
    if (kind == "/GoTo" && key == "/D") {
      out.separate();
      destinationBody(out, value);
    } else if (targets != nullptr && key == targets) {
      writeTargets(out, value);
    } else {
      out.value(value);
    }
  }
}

/// Writes the actions that follow, as one or as an array; false when none stays.
bool LinkRules::followers(Fragment& out, QPDFObjectHandle next, int depth) {
  if (!next.isArray()) {
    return actionBody(out, next, depth);
  }
  Fragment list;
  bool any = false;
  for (int i = 0; i < next.getArrayNItems(); ++i) {
    any = actionBody(list, next.getArrayItem(i), depth) || any;
  }
  if (any) {
    out.text("[");
    out.append(list);
    out.text("]");
  }
  return any;
}

bool LinkRules::actionBody(Fragment& out, QPDFObjectHandle action, int depth) {
  if (!action.isDictionary() || depth > deepestChain || ++m_actionsWritten > mostActions) {
    return false;
  }
  if (!needsRewriting(action)) {
    out.separate();
    out.value(action);
    return true;
  }
  Fragment next;
  const bool goesOn = action.hasKey("/Next") && followers(next, action.getKey("/Next"), depth + 1);
  const bool stays = staysAlone(action);
  if (!stays) {
    if (!goesOn) {
      return false;
    }
    // What followed moves up. Several cannot stand where one must: they follow one that does
    // nothing.
    if (action.getKey("/Next").isArray()) {
      out.text("<</S/SetOCGState/State[]/Next");
      out.append(next);
      out.text(">>");
    } else {
      out.separate();
      out.append(next);
    }
    return true;
  }
  out.text("<<");
  actionEntries(out, action, kindOf(action));
  if (goesOn) {
    out.text("/Next");
    out.separate();
    out.append(next);
  }
  out.text(">>");
  return true;
}

bool LinkRules::writeAction(Fragment& out, const char* key, QPDFObjectHandle action) {
  m_actionsWritten = 0;
  Fragment body;
  // Some producers put a destination where an action belongs.
  if (action.isArray()) {
    return writeDestination(out, "/Dest", action);
  }
  if (!actionBody(body, action, 0)) {
    return false;
  }
  out.text(key);
  out.separate();
  out.append(body);
  return true;
}

void LinkRules::writeEventActions(Fragment& out, const char* key, QPDFObjectHandle events) {
  if (!events.isDictionary()) {
    return;
  }
  Fragment list;
  bool any = false;
  for (auto& [event, action] : events.getDictAsMap()) {
    any = writeAction(list, event.c_str(), action) || any;
  }
  if (any) {
    out.text(key);
    out.text("<<");
    out.append(list);
    out.text(">>");
  }
}

} // namespace cleftor
