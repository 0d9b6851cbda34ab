// How content gets onto the disk. An open file's content and the name by which its folder lists it get there
// separately.
#pragma once

#include <string>
#include <string_view>

namespace recording {

// Writes all of it, in as many pieces as it takes. False, with errno, when some could not be written.
bool WriteAll(int descriptor, std::string_view content);

// Waits until what was written to an open file is on the disk. True also where the file system, or the kind
// of file, knows no such wait; false, with errno, when the disk has failed.
bool Sync(int descriptor);

// The same for the names in the folder of the path, so that a new one outlasts a loss of power. True also for
// a folder that may be written to but not read.
bool SyncFolderOf(const std::string& path);

}  // namespace recording
