// FltSceneBuilder: turns the parsed records of one conversion into a scene graph. The
// conversion run chooses the builder by its options and hands it a build context: what the
// run has read and decided, and the way back to the run for referenced databases.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include "reader/FltRecord.h"

class FltInput;
class FltProgress;
class FltRecordStore;
class FltReferenceChain;
class SoSeparator;
struct FltScene;

struct FltBuildContext {
    FltRecordStore& records;
    FltInput& input;
    // The format revision and packed-colour mode the parse took from the header.
    FltVersion version;
    // The conversion's log (a stream that writes nothing when there is no log), and where
    // the lines a file input writes when it cannot read a file go.
    std::ostream& log;
    std::ostream& errors;
    // What texture file names are prefixed with: the folder of a referenced database as the
    // reference names it, empty for the database converted.
    std::string texturePrefix;
    // How deep the hierarchy already is where this database hangs (references nest).
    int startDepth = 0;
    FltReferenceChain& references;
    // Converts a referenced database, read into `input`, into `root` with the same options
    // and a builder of the same kind, its texture names prefixed and its hierarchy `depth`
    // levels deep already.
    std::function<void(FltInput& input, const std::string& texturePrefix, int depth, SoSeparator* root)>
        convertReference;
    // The same for a builder that makes scenes: the referenced database's scene.
    std::function<std::shared_ptr<const FltScene>(FltInput& input, int depth)> sceneOfReference;
    // Told how far the walk has come (see FltProgress::walked); null when nobody follows it.
    FltProgress* progress = nullptr;
};

class FltSceneBuilder {
public:
    virtual ~FltSceneBuilder() = default;
    // Builds the scene of the context's records under the root the builder was made for.
    virtual void build() = 0;
};
