// What a VRML97 file needs beyond Coin's conversion (SoToVRML2Action) for VRML readers,
// Coin's own included, to read it back: node names that are identifiers, and textures in a
// format VRML viewers read.
#pragma once

#include <iosfwd>
#include <string>

class QetzFltLibrary;
class SoNode;

// `name` as an identifier that VRML97 and Coin's reader take: every character that either
// refuses (controls, space, non-ASCII bytes, " # ' ( ) + , . [ \ ] { | } and DEL; Coin reads
// "+" as the start of its own instance suffix) becomes "_", and a name that does not start
// with a letter or "_" gets "_" in front; a VRML keyword (USE, NULL, TRUE...) gets "_" after
// it. Empty stays empty.
std::string vrmlIdentifier(const std::string& name);

// Renames every node of the VRML scene below root whose name is not an identifier (see
// vrmlIdentifier). Distinct names stay distinct: a new name already taken gets "_2", "_3"...
// Returns how many names changed.
int makeVrmlNamesValid(SoNode* root);

// Writes each image that the scene's ImageTexture urls name (relative to outputDir, where
// the VRML file goes) as a PNG file in outputDir, named after the image and distinct per
// image, and points the urls at them; PNG images are referenced as they are. An image that
// cannot be converted is left out of the urls, with a message on `errors`. Returns the
// number of images that could not be converted.
int writeVrmlTexturesAsPng(SoNode* root, const std::string& outputDir, QetzFltLibrary& library,
                           std::ostream& errors);
