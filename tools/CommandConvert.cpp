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

#include <cctype>
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
    "usage: qetzflt convert IN.flt [-o OUT.iv|OUT.wrl|OUT.glb|OUT.gltf] [--binary] [--vrml2] [--yup] [--classic]\n"
    "                       [--log | --log-dir DIR | --no-log]\n"
    "       qetzflt convert IN.flt... | FOLDER... -o DIR [--format iv|ivb|wrl|glb] [--jobs N] [--strict] [...]\n"
    "\n"
    "Converts an OpenFlight database, drawn as the format means it, and writes the scene graph\n"
    "with Coin, or as glTF 2.0 for today's engines and viewers.\n"
    "On a terminal, a conversion that takes a while shows a progress bar on standard error.\n"
    "  -o OUT       output file (default: IN with its extension replaced by .iv, or .wrl with --vrml2);\n"
    "               OUT.glb: binary glTF with everything inside; OUT.gltf: glTF with OUT.bin and PNG\n"
    "               images beside it (metres, Y up; switches as their mask, levels of detail as the nearest)\n"
    "  --binary     binary Inventor instead of ASCII\n"
    "  --vrml2      VRML97 (VRML 2.0) instead of Inventor; VRML viewers expect Y up, see --yup\n"
    "  --yup        rotate the Z-up database into the Y-up frame that Inventor and VRML viewers expect\n"
    "Texture file names are written relative to the output file, so that they resolve from there.\n"
    "  --classic    the classic conversion: exactly what the library's convertFrom returns\n"
    "  --log        write the library's log next to the input (IN.flt.log)\n"
    "  --log-dir D  write the log of each input into the folder D (D/IN.flt.log)\n"
    "  --no-log     no log (the default)\n"
    "Batches: several inputs, or folders (their OpenFlight databases, told by content, in every\n"
    "subfolder), are converted into -o DIR, keeping a folder's layout, one line per database and\n"
    "a total; exit status 1 when one failed.\n"
    "  --format F   iv (ASCII Inventor, the default), ivb (binary Inventor, named NAME.iv), wrl\n"
    "               (VRML97) or glb (binary glTF)\n"
    "  --jobs N     convert N databases at once, each in a process of its own (default 1)\n"
    "  --strict     exit status 1 as well when a conversion reported an error (level 3), its\n"
    "               output written all the same (one database or a batch)\n"
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

bool isGltfName(const std::string& path)
{
    std::string extension = std::filesystem::path(path).extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension == ".glb" || extension == ".gltf";
}

// What a batch learns of one conversion, on the worker's standard output: its faces (-1
// when not counted) and its messages by level.
void reportBatchItem(long faces, const std::vector<ConsoleMessage>& messages)
{
    int levels[4] = {0, 0, 0, 0};
    for (const ConsoleMessage& m : messages) ++levels[m.level >= 1 && m.level <= 3 ? m.level : 0];
    std::cout << kBatchReport << " " << faces << " " << levels[1] << " " << levels[2] << " " << levels[3] << "\n";
}

// With --strict, a conversion that reported an error (level 3) fails, its output written.
bool strictFailure(const Arguments& args, const std::string& input, const std::vector<ConsoleMessage>& messages)
{
    if (!args.has("--strict") || args.has("--batch-item")) return false;
    for (const ConsoleMessage& m : messages)
        if (m.level >= 3) {
            std::cerr << "qetzflt convert: " << input << ": the conversion reported an error (--strict)\n";
            return true;
        }
    return false;
}

int writeGltf(const std::string& input, const std::string& output, const Arguments& args)
{
    QetzFltLibrary* library = loadLibrary();
    if (!library) return kFailed;
    if (!library->writeGltf) {
        std::cerr << "qetzflt convert: the library " << library->path() << " cannot write glTF\n";
        return kFailed;
    }
    if (!isConvertibleInput(*library, input, "qetzflt convert")) return kFailed;
    std::string why;
    if (!makeParentDirectory(output, &why)) {
        std::cerr << "qetzflt convert: cannot write " << output << ": " << why << "\n";
        return kFailed;
    }
    // The library's messages are echoed on standard error as they come (not in a batch).
    const bool item = args.has("--batch-item");
    const unsigned int options = QETZFLT_NO_STANDARD_OUTPUT | logOption(args) | QETZFLT_NO_ECHO;
    int status = 0;
    ProgressBar(!item).follow(*library, [&] { status = library->writeGltf(input.c_str(), output.c_str(), options); });
    const std::vector<ConsoleMessage> messages = takeLastMessages(*library);
    // Echoed once the run has ended: a refusal is said in one line.
    if (!item && status != 1) echoMessages(messages);
    if (logOption(args) != QETZFLT_LOG_NONE) settleLog(input, args, status == 1);
    if (status == 0) {
        if (item) reportBatchItem(library->lastGltfFaceCount ? library->lastGltfFaceCount() : -1, messages);
        else std::cout << "wrote " << output << "\n";
        return strictFailure(args, input, messages) ? kFailed : kOk;
    }
    std::cerr << "qetzflt convert: " << output << " not written"
              << (status == 1   ? ": " + input + " not converted: " + lastError(messages, "refused by the library")
                  : status == 3 ? ": the database draws nothing"
                                : std::string())
              << "\n";
    return kFailed;
}

}  // namespace

int commandConvert(int argc, char** argv)
{
    const Arguments args = parseArguments(argc, argv, 2, {"--binary", "--vrml2", "--yup", "--strict", "--batch-item"},
                                          {"-o", "--format", "--jobs"});
    if (args.help) {
        std::cout << kConvertUsage;
        return kOk;
    }
    if (!args.error.empty()) return usageError("convert", args.error, kConvertUsage);
    if (args.positional.empty()) return usageError("convert", "expects an input file", kConvertUsage);
    const bool batch = args.positional.size() > 1 || std::filesystem::is_directory(args.positional[0]) ||
                       !args.value("--format").empty() || !args.value("--jobs").empty();
    if (batch) {
        if (args.value("-o").empty()) return usageError("convert", "a batch needs -o DIR", kConvertUsage);
        return convertBatch(args, kConvertUsage);
    }
    const bool vrml = args.has("--vrml2");
    if (vrml && args.has("--binary"))
        return usageError("convert", "--binary and --vrml2 exclude each other", kConvertUsage);

    const std::string input = args.positional[0];
    std::string output = args.value("-o");
    if (output.empty()) output = std::filesystem::path(input).replace_extension(vrml ? ".wrl" : ".iv").string();
    if (isGltfName(output)) {
        for (const char* flag : {"--binary", "--vrml2", "--yup", "--classic"})
            if (args.has(flag))
                return usageError("convert", std::string(flag) + " does not apply to glTF, which is written as authored",
                                  kConvertUsage);
        return writeGltf(input, output, args);
    }

    const bool item = args.has("--batch-item");
    ProgressBar progress(!item);
    Conversion conversion;
    conversion.progress = &progress;
    if (!conversion.run(input, !item, args)) return kFailed;

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
        std::string why;
        if (!makeParentDirectory(output, &why)) {
            std::cerr << "qetzflt convert: cannot write " << output << ": " << why << "\n";
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

    std::string error;
    const bool wrote = writeReplacing(
        output,
        [&](const std::string& temporary) {
            SoOutput out;
            if (!out.openFile(temporary.c_str())) return false;
            if (vrml) {
                // The VRML scene is the action's own: the library's scene keeps its names.
                makeVrmlNamesValid(written);
                if (QetzFltLibrary* library = loadLibrary())
                    writeVrmlTexturesAsPng(written, outputDir, *library, std::cerr);
                out.setHeaderString("#VRML V2.0 utf8");
            }
            out.setBinary(args.has("--binary"));
            // Writing a large scene takes a while too.
            progress.say("writing " + output);
            SoWriteAction writer(&out);
            writer.apply(written);
            out.closeFile();
            progress.clear();
            return true;
        },
        error);
    const int status = wrote && !strictFailure(args, input, conversion.messages) ? kOk : kFailed;
    if (wrote && item) reportBatchItem(summarizeScene(conversion.root).faces, conversion.messages);
    else if (wrote) std::cout << "wrote " << output << "\n";
    else std::cerr << "qetzflt convert: " << error << "\n";
    written->unref();
    if (wrapper) wrapper->unref();
    return status;
}
