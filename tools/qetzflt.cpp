// qetzflt: convert and inspect OpenFlight databases with libQetzFlt.
//
//   qetzflt convert IN.flt [-o OUT.iv] [--binary] [--yup]
//
// Exit status: 0 on success, 1 on a refused or failed conversion, 2 on bad usage.
#include <Inventor/SbVec3f.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoOutput.h>
#include <Inventor/actions/SoWriteAction.h>
#include <Inventor/nodes/SoRotation.h>
#include <Inventor/nodes/SoSeparator.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "QetzFltLibrary.h"

namespace {

constexpr int kOk = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

const char* const kMainUsage =
    "usage: qetzflt <command> [options]\n"
    "\n"
    "commands:\n"
    "  convert IN.flt [-o OUT.iv] [--binary] [--yup]   write the scene as an Inventor file\n"
    "\n"
    "Run 'qetzflt <command> --help' for the options of a command.\n";

const char* const kConvertUsage =
    "usage: qetzflt convert IN.flt [-o OUT.iv] [--binary] [--yup]\n"
    "\n"
    "Converts an OpenFlight database and writes the scene graph with Coin.\n"
    "  -o OUT.iv   output file (default: IN with its extension replaced by .iv)\n"
    "  --binary    binary Inventor instead of ASCII\n"
    "  --yup       rotate the Z-up database into the Y-up frame that Inventor viewers expect\n"
    "The library writes its log next to the input (IN.flt.log).\n";

struct Arguments {
    std::vector<std::string> positional;
    std::vector<std::string> flags;
    std::string output;
    bool help = false;
    std::string error;
};

// Splits options from positional arguments; options that take a value are listed.
Arguments parseArguments(int argc, char** argv, int first, const std::vector<std::string>& known)
{
    Arguments args;
    for (int i = first; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "-h" || a == "--help") {
            args.help = true;
        } else if (a == "-o") {
            if (i + 1 >= argc) {
                args.error = "option -o needs a file name";
                return args;
            }
            args.output = argv[++i];
        } else if (a.size() > 1 && a[0] == '-') {
            bool ok = false;
            for (const std::string& k : known) ok = ok || k == a;
            if (!ok) {
                args.error = "unknown option " + a;
                return args;
            }
            args.flags.push_back(a);
        } else {
            args.positional.push_back(a);
        }
    }
    return args;
}

bool hasFlag(const Arguments& args, const char* flag)
{
    for (const std::string& f : args.flags)
        if (f == flag) return true;
    return false;
}

// Loads the library and converts; null with a message on standard error when refused.
SoSeparator* convertWithLibrary(const std::string& input)
{
    QetzFltLibrary library;
    if (!library.loaded()) {
        std::cerr << "qetzflt: cannot load libQetzFlt.so: " << library.error() << "\n";
        return nullptr;
    }
    if (!std::filesystem::is_regular_file(input)) {
        std::cerr << "qetzflt: " << input << ": no such file\n";
        return nullptr;
    }
    SoSeparator* root = library.convertFrom(input.c_str());
    if (!root) {
        std::cerr << "qetzflt: " << input << ": conversion failed\n";
        return nullptr;
    }
    root->ref();
    if (root->getNumChildren() == 0) {
        std::cerr << "qetzflt: " << input << ": not converted (see the messages above)\n";
        root->unref();
        return nullptr;
    }
    return root;
}

int commandConvert(int argc, char** argv)
{
    Arguments args = parseArguments(argc, argv, 2, {"--binary", "--yup"});
    if (args.help) {
        std::cout << kConvertUsage;
        return kOk;
    }
    if (!args.error.empty() || args.positional.size() != 1) {
        std::cerr << "qetzflt convert: " << (args.error.empty() ? "expects one input file" : args.error) << "\n"
                  << kConvertUsage;
        return kUsage;
    }
    const std::string input = args.positional[0];
    std::string output = args.output;
    if (output.empty()) output = std::filesystem::path(input).replace_extension(".iv").string();

    SoSeparator* root = convertWithLibrary(input);
    if (!root) return kFailed;

    SoSeparator* scene = root;
    if (hasFlag(args, "--yup")) {
        scene = new SoSeparator;
        scene->ref();
        auto* rotation = new SoRotation;
        rotation->rotation.setValue(SbVec3f(1, 0, 0), static_cast<float>(-M_PI / 2));
        scene->addChild(rotation);
        scene->addChild(root);
    }

    SoOutput out;
    int status = kOk;
    if (!out.openFile(output.c_str())) {
        std::cerr << "qetzflt convert: cannot write " << output << "\n";
        status = kFailed;
    } else {
        out.setBinary(hasFlag(args, "--binary"));
        SoWriteAction writer(&out);
        writer.apply(scene);
        out.closeFile();
        std::cout << "wrote " << output << "\n";
    }
    if (scene != root) scene->unref();
    root->unref();
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    SoDB::init();
    if (argc < 2) {
        std::cerr << kMainUsage;
        return kUsage;
    }
    const std::string command = argv[1];
    if (command == "-h" || command == "--help") {
        std::cout << kMainUsage;
        return kOk;
    }
    if (command == "convert") return commandConvert(argc, argv);
    std::cerr << "qetzflt: unknown command " << command << "\n" << kMainUsage;
    return kUsage;
}
