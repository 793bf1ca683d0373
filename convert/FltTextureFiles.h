// Where the image a texture pattern names is found, by the as-authored rule.
#pragma once

#include <string>

// The image file of a texture pattern named `name` in a database whose file lies in
// `databaseDirectory` (its file input's directory: ending in a slash, or empty for the
// working folder): the name as written, relative to that folder when it is relative; else
// the name's last part beside the database (authoring machines wrote absolute paths of
// their own). Backslashes read as slashes. Empty when neither is a regular file; looked up
// without opening anything, so that a named pipe cannot block.
std::string fltFindTexture(const std::string& databaseDirectory, const std::string& name);

// How an image repeats across texture coordinates beyond 0 to 1, as its attribute file
// (the image's name followed by ".attr") says; repeating in both directions when there is
// none, or it is too short to say.
enum class FltTextureWrap { Repeat, Clamp, MirroredRepeat };
struct FltTextureWraps {
    FltTextureWrap u = FltTextureWrap::Repeat;
    FltTextureWrap v = FltTextureWrap::Repeat;
};
FltTextureWraps fltTextureWraps(const std::string& imagePath);
