// What commands ask about files that the user names.
#pragma once

// True when `path` names something, of whatever kind.
bool FileExists(const char* path);
