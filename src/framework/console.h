// Prints to the user outside a command's document, and the log mirror that a shell user can open.
#pragma once

#include <cstdint>

// What a print is. Only kLogOnly changes anything.
enum PrintLevel : std::uint16_t {
  kPrintPrompt = 0,
  kPrintHelpNote = 10,
  kPrintHelpHead = 11,
  kPrintError = 12,
  kPrintText = 15,
  kPrintLogOnly = 65535,  // to the log mirror, not to standard output
};

// Prints to standard output and, at most 4095 characters of it, to the log mirror.
[[gnu::format(printf, 2, 3)]] void ConsolePrint(PrintLevel level, const char* format, ...);

// Opens `path` as the log mirror: write-only, created, truncated, readable by nobody but its owner's
// superuser. A mirror that is already open stays open and is only forgotten. Returns false, with
// errno set, when the file cannot be opened.
bool OpenLogMirror(const char* path);

// Closes the log mirror if there is one.
void CloseLogMirror();

// Writes the text to the log mirror, if one is open, without adding a line end. A failure is ignored.
void MirrorToLogFile(const char* text);
