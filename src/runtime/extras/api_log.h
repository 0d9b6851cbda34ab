#pragma once

// Logs "ZNDM_DebugPrint: tag : text" as a debug message of CoreLogMessage and in the API log. Of both texts
// at most 511 characters count; null counts as empty.
void ZNDM_DebugPrint(const char* tag, const char* text);

// Appends `line` to /tmp/APILog.txt, as `Debug:"line" `. When the file cannot be opened, which includes a
// symbolic link in its place, prints why on standard output, and the working directory.
void WriteApiLog(const char* line);
