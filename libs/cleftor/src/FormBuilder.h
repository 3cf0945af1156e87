#pragma once

#include "LinkRules.h"

#include <vector>

namespace cleftor {

/// The part of a form that has widgets on the pages of a range. A field keeps its name, its value
/// and its place below other fields, and stays one field when several of its widgets are kept.
class FormBuilder {
public:
  FormBuilder(Source& source, ObjectCopier& copier, LinkRules& links)
      : m_source(source), m_copier(copier), m_links(links) {}

  /// Notes a widget that the range keeps.
  void addWidget(QPDFObjectHandle widget);

  bool isEmpty() const { return m_kept.empty(); }

  /// Writes the entries of a field or widget that concern the form: its field above, those below,
  /// its value and what happens to it. Takes what it has dealt with out of entries.
  void writeFieldEntries(Fragment& out, QPDFObjectHandle field,
                         std::map<std::string, QPDFObjectHandle>& entries);

  /// Writes the fields above the widgets.
  void writeFields();

  /// The form dictionary of the output.
  Fragment form();

private:
  struct Kept {
    std::vector<QPDFObjGen> below;
    bool isWidget = false;
  };

  void order(std::vector<QPDFObjGen>& fields);

  Source& m_source;
  ObjectCopier& m_copier;
  LinkRules& m_links;
  pages::ObjGenMap<Kept> m_kept;
  std::vector<QPDFObjGen> m_top;
};

} // namespace cleftor
