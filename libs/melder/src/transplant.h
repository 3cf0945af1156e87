#ifndef MELDER_TRANSPLANT_H
#define MELDER_TRANSPLANT_H

#include "object_text.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace melder {

class Update;

/**
 * Digests of fonts, images and other unchanging objects that the receiving file holds, so that
 * a part that brings the same ones again refers to them. Bounded: what came first stays.
 */
class SharedObjects {
public:
  [[nodiscard]] std::optional<QPDFObjGen> find(const Digest& digest) const;
  void remember(const Digest& digest, QPDFObjGen id);
  /** Takes in what the first and the last pages of the file draw with. */
  void sample(const std::vector<QPDFObjectHandle>& pages);

private:
  std::map<Digest, QPDFObjGen> m_known;
};

/** Moves objects of a part into an update, with everything that they refer to. */
class Transplant {
public:
  /** Whether an equal object of the receiving file may stand in; not for what a person can edit. */
  enum class Sharing { Allowed, Forbidden };

  Transplant(Update& update, SharedObjects& shared);
  Transplant(const Transplant&) = delete;
  Transplant& operator=(const Transplant&) = delete;
  ~Transplant() = default;

  /** References to `from` become references to `to`; the object itself is not moved. */
  void pin(QPDFObjGen from, QPDFObjGen to) { m_moved[from] = to; }
  void setDestinations(ObjectPrinter::Renamed names) {
    m_printer.setDestinations(std::move(names));
  }

  /** The value as the update has to write it; what it refers to has been put there. */
  [[nodiscard]] std::string text(const QPDFObjectHandle& value, Sharing sharing);
  /** The same for each entry of a dictionary that the caller writes. */
  [[nodiscard]] DictText entries(const QPDFObjectHandle& dictionary, Sharing sharing);
  /** Number of references to objects that the part does not have. */
  [[nodiscard]] int dangling() const { return m_dangling; }

private:
  struct Frame {
    QPDFObjectHandle object;
    std::vector<QPDFObjectHandle> below;
    size_t next = 0;
    bool sharable = false;
  };
  using Places = std::map<QPDFObjGen, size_t>;

  void moveAll(const std::vector<QPDFObjectHandle>& references, bool sharable);
  void move(const QPDFObjectHandle& object, bool sharable);
  void enter(QPDFObjectHandle object, bool sharable, std::vector<Frame>& open, Places& places);
  void settle(const Frame& frame);

  Update& m_update;
  SharedObjects& m_shared;
  std::map<QPDFObjGen, QPDFObjGen> m_moved;
  ObjectPrinter m_printer;
  int m_dangling = 0;
};

} // namespace melder

#endif
