// PageRangeFile: the pages of an entry as a file of their own.
#pragma once

#include "mail/EmailEntry.h"

namespace folivex {

class CSplitPdfInit;

struct [[nodiscard]] AttachmentFile {
  QString path;                  ///< of the file to attach; empty when there is none
  QString errorText;             ///< why
  platform::FileDigest identity; ///< of the file to attach
  bool isOtherFile = false;      ///< the entry's file is not the one that its identity tells
};

/// Whether the entry asks for a part of its file.
bool hasPageRange(const EmailEntry& entry);

/// The text that tells the range files of one source apart: the invoice number, if any, and "p3-5".
QString pageRangeLabel(const EmailEntry& entry);

/// Path of the range file: beside `file`, named "TITLE LABEL.pdf". What stands in the label never
/// leads to another folder.
QString pageRangePath(const QString& file, const QString& label);

/// Writes the pages of the entry to pageRangePath(); an older file there is deleted first. Nothing
/// comes of it when the entry's file does not hold, before and after, the bytes of its identity.
/// Uses the one open source of the split library: not to be called while a split runs.
AttachmentFile writePageRange(CSplitPdfInit& library, const EmailEntry& entry,
                              const QString& label);

} // namespace folivex
