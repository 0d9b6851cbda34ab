// Waiting until what was written is on the disk, so that it outlasts a loss of power.
//
// A file's content and the name by which a folder lists it get there separately: a new, renamed or removed
// file needs its folder's wait too. Nothing here takes memory.
#pragma once

// Waits for the content of an open file. True also where the file system, or the kind of file, knows no such
// wait. False, with errno, when the disk has failed.
bool SyncDescriptor(int descriptor);

// The same for what the path names: a file's content, or the names in a folder. True also for a path that
// can't be opened, such as a folder that may be written to but not read.
bool SyncPath(const char* path);

// The same for the names in the folder that holds the path's last one.
bool SyncFolderOf(const char* path);
