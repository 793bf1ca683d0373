// qetzflt convert: the scene written as an ASCII or binary Inventor file, or as VRML97.
#include <Inventor/SbVec3f.h>
#include <Inventor/SoInput.h>
#include <Inventor/SoOutput.h>
#include <Inventor/actions/SoToVRML2Action.h>
#include <Inventor/actions/SoWriteAction.h>
#include <Inventor/nodes/SoRotation.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/VRMLnodes/SoVRMLGroup.h>

#include <cmath>
#include <filesystem>
#include <iostream>
#include <string>

#include "Commands.h"
#include "QetzFltLibrary.h"
#include "SceneSummary.h"
#include "ToolSupport.h"
#include "VrmlOutput.h"

namespace {

const char* const kConvertUsage =
    "usage: qetzflt convert IN.flt [-o OUT.iv] [--binary] [--vrml2] [--yup] [--classic]\n"
    "\n"
    "Converts an OpenFlight database, drawn as the format means it, and writes the scene graph\n"
    "with Coin.\n"
    "  -o OUT       output file (default: IN with its extension replaced by .iv, or .wrl with --vrml2)\n"
    "  --binary     binary Inventor instead of ASCII\n"
    "  --vrml2      VRML97 (VRML 2.0) instead of Inventor; VRML viewers expect Y up, see --yup\n"
    "  --yup        rotate the Z-up database into the Y-up frame that Inventor and VRML viewers expect\n"
    "Texture file names are written relative to the output file, so that they resolve from there.\n"
    "  --classic    the classic conversion: exactly what the library's convertFrom returns\n"
    "  --no-log     leave the record dump out of the log (it keeps the parse progress)\n"
    "The library writes its log next to the input (IN.flt.log).\n"
    "VRML output gets node names that are VRML identifiers, and each texture image as a PNG file\n"
    "beside OUT (named after the image), which its ImageTexture urls name.\n";

// Texture names come from the library relative to the database's directory; written
// files need them relative to their own location. Notification is held back so that
// Coin does not try to reload each image under its new name.
void rewriteTextureNames(SoNode* root, const std::string& databaseDir, const std::string& outputDir)
{
    for (SoTexture2* texture : findTextures(root)) {
        const std::string name = texture->filename.getValue().getString();
        if (name.empty()) continue;
        const std::string rewritten = relativePath(resolveAgainst(name, databaseDir), outputDir);
        const SbBool notify = texture->filename.enableNotify(FALSE);
        texture->filename.setValue(rewritten.c_str());
        texture->filename.enableNotify(notify);
    }
}

}  // namespace

int commandConvert(int argc, char** argv)
{
    const Arguments args = parseArguments(argc, argv, 2, {"--binary", "--vrml2", "--yup"}, {"-o"});
    if (args.help) {
        std::cout << kConvertUsage;
        return kOk;
    }
    if (!args.error.empty()) return usageError("convert", args.error, kConvertUsage);
    if (args.positional.size() != 1) return usageError("convert", "expects one input file", kConvertUsage);
    const bool vrml = args.has("--vrml2");
    if (vrml && args.has("--binary"))
        return usageError("convert", "--binary and --vrml2 exclude each other", kConvertUsage);

    const std::string input = args.positional[0];
    std::string output = args.value("-o");
    if (output.empty()) output = std::filesystem::path(input).replace_extension(vrml ? ".wrl" : ".iv").string();

    Conversion conversion;
    if (!conversion.run(input, true, args)) return kFailed;

    rewriteTextureNames(conversion.root, conversion.directory, directoryOf(output));

    SoNode* written = conversion.root;
    SoSeparator* wrapper = nullptr;
    if (args.has("--yup")) {
        wrapper = new SoSeparator;
        wrapper->ref();
        auto* rotation = new SoRotation;
        rotation->rotation.setValue(SbVec3f(1, 0, 0), static_cast<float>(-M_PI / 2));
        wrapper->addChild(rotation);
        wrapper->addChild(conversion.root);
        written = wrapper;
    }
    SoToVRML2Action toVrml;
    const std::string outputDir = directoryOf(output);
    if (vrml) {
        // The folder first: the PNG textures go there, and the image textures that the
        // action makes load their (rewritten) names at once, from the output's place.
        if (!makeParentDirectory(output)) {
            std::cerr << "qetzflt convert: cannot write " << output << "\n";
            if (wrapper) wrapper->unref();
            return kFailed;
        }
        SoInput::addDirectoryFirst(outputDir.c_str());
        toVrml.apply(written);
        SoInput::removeDirectory(outputDir.c_str());
        written = toVrml.getVRML2SceneGraph();
    }
    if (!written) {
        std::cerr << "qetzflt convert: the scene could not be converted to VRML\n";
        if (wrapper) wrapper->unref();
        return kFailed;
    }
    written->ref();

    SoOutput out;
    int status = kOk;
    if (!makeParentDirectory(output) || !out.openFile(output.c_str())) {
        std::cerr << "qetzflt convert: cannot write " << output << "\n";
        status = kFailed;
    } else {
        if (vrml) {
            // The VRML scene is the action's own: the library's scene keeps its names.
            makeVrmlNamesValid(written);
            if (QetzFltLibrary* library = loadLibrary())
                writeVrmlTexturesAsPng(written, outputDir, *library, std::cerr);
            out.setHeaderString("#VRML V2.0 utf8");
        }
        out.setBinary(args.has("--binary"));
        SoWriteAction writer(&out);
        writer.apply(written);
        out.closeFile();
        std::cout << "wrote " << output << "\n";
    }
    written->unref();
    if (wrapper) wrapper->unref();
    return status;
}
