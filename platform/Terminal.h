// What a program needs to know of its terminal.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

namespace folivex::platform {

/// True when the stream is shown to a person.
bool isTerminal(std::FILE* stream);

/// While it is there, what is shown to a person may be written in UTF-8. Only consoles of Windows
/// have to be told.
class Utf8Console {
public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

private:
  unsigned m_before = 0; ///< code page; 0 where there is no console
};

/// Text as it may be written to a terminal: text from a page or a file name can hold control
/// characters, which a terminal would obey. Line ends and tabs stay.
QByteArray terminalText(const QString& text);

/// True when a person can see a window: a display is there, and Qt was not told to draw elsewhere.
bool hasDisplay();

} // namespace folivex::platform
