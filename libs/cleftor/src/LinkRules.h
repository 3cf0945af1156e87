#pragma once

#include "Fragment.h"
#include "ObjectCopier.h"
#include "Source.h"

#include <cstdint>

namespace cleftor {

/// What becomes of links and actions in an output: those that lead to one of its pages stay, those
/// that lead to another page go, and those that have nothing to do with pages stay as they are. Its
/// pages have to be placed before.
class LinkRules {
public:
  LinkRules(Source& source, ObjectCopier& copier) : m_source(source), m_copier(copier) {}

  /// Whether a destination of any kind leads to a page of the output.
  bool leadsInside(QPDFObjectHandle destination);

  /// Writes "/key value" when the destination leads into the output; false when it goes.
  bool writeDestination(Fragment& out, const char* key, QPDFObjectHandle destination);

  /// Writes "/key value" for what stays of an action and those that follow it; false when none
  /// does.
  bool writeAction(Fragment& out, const char* key, QPDFObjectHandle action);

  /// Writes "/key value" for what stays of a dictionary of actions by event.
  void writeEventActions(Fragment& out, const char* key, QPDFObjectHandle events);

private:
  bool staysAlone(QPDFObjectHandle action);
  bool needsRewriting(QPDFObjectHandle action);
  bool actionBody(Fragment& out, QPDFObjectHandle action, int depth);
  void actionEntries(Fragment& out, QPDFObjectHandle action, const std::string& kind);
  bool followers(Fragment& out, QPDFObjectHandle next, int depth);
  void destinationBody(Fragment& out, QPDFObjectHandle destination);
  bool targetsAny(QPDFObjectHandle targets);
  void writeTargets(Fragment& out, QPDFObjectHandle targets);

  Source& m_source;
  ObjectCopier& m_copier;
  int m_actionsWritten = 0;
};

} // namespace cleftor
