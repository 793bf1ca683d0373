// Texture images as PNG: what VRML97 and glTF viewers read, whatever the database's image
// format (SGI .rgb/.rgba/.int/.inta most often). The image is read through the scene graph
// library's own reader, so every format that library draws converts.
#pragma once

#include <string>
#include <vector>

// Reads an image file through the scene graph library's image reader (Coin's SbImage, which
// reads SGI images through simage) and encodes it as PNG in memory. False, with a reason,
// when it cannot be read.
bool fltEncodePng(const std::string& imagePath, std::vector<unsigned char>& png, int& width, int& height,
                  std::string& why);

// The same, written to pngPath (to a temporary name in the same folder, then renamed).
bool fltWritePng(const std::string& imagePath, const std::string& pngPath, std::string& why);

// The writing step of fltWritePng: bytes written to path through a temporary name in the
// same folder, renamed over path once complete. False, with the system's reason, when not.
bool fltWriteFileReplacing(const std::string& path, const std::vector<unsigned char>& bytes, std::string& why);
