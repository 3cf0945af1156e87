// Which languages the pages are read in.
#pragma once

#include <QString>

namespace scanlite {

/// The languages to read in, as Tesseract names them, joined by "+".
///
/// FOLIVEX_OCR_LANGUAGE when it is set, installed or not: who names a language wants to hear that
/// it is missing. Else the language of the person's locale beside English, when it is installed,
/// else English.
QString ocrLanguages(const QString& workFolder);

} // namespace scanlite
