// Where the files that a database names are looked for: the one rule of the conversion and
// of `qetzflt deps`, which loads the library at run time and so includes this header.
#pragma once

#include <algorithm>
#include <string>

namespace fltpath {

// The file an external reference opens: the referencing database's directory as its file
// input gives it (ending in its slash, empty for a file named without one) followed by the
// name as written, less a leading "./" or ".\"; backslashes read as slashes.
inline std::string externalReference(const std::string& directory, const std::string& name)
{
    std::string relative = name;
    if (relative.size() >= 2 && relative[0] == '.' && (relative[1] == '/' || relative[1] == '\\')) relative.erase(0, 2);
    std::string path = directory + relative;
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

// The prefix a referenced database's texture names get: the referencing one's own prefix,
// then the directory part of the reference's name as written and a slash.
inline std::string nestedTexturePrefix(const std::string& current, const std::string& name)
{
    const size_t cut = name.find_last_of("/\\");
    if (cut == std::string::npos) return current;
    return current + name.substr(0, cut) + "/";
}

}  // namespace fltpath
