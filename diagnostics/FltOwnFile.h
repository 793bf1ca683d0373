// Opening the files a conversion writes next to a database (its log, its statistics) so
// that nothing a user owns is overwritten through a link, and nothing blocks.
#pragma once

#include <string>

// Opens `path` for writing, emptied (or for appending): never through a symbolic link, only
// when it is absent or a regular file with no other name, and without waiting on a named
// pipe. Gives the descriptor, or -1; then `refusal` tells why when the file exists as
// something not to write (a link, a pipe, a folder, a device, a file of several names), and
// is empty when the file merely cannot be written.
int fltOpenOwnFile(const std::string& path, bool append, std::string& refusal);
