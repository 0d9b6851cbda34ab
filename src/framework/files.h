// What commands ask about files that the user names.
#pragma once

// True when something of any kind stands at `path`.
bool FileExists(const char* path);
