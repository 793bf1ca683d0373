// qetzflt: convert, inspect and picture OpenFlight databases with libQetzFlt.
//
//   qetzflt convert IN.flt [-o OUT.iv] [--binary] [--vrml2] [--yup]
//   qetzflt convert IN.flt... | FOLDER... -o DIR [--format F] [--jobs N] [--strict]
//   qetzflt info IN.flt [--tree]
//   qetzflt deps IN.flt
//   qetzflt stats IN.flt
//   qetzflt render IN.flt -o OUT.png [--size WxH] [--view iso|top|front]
//   qetzflt view IN.flt [--classic] [--no-textures] [--screenshot OUT.png] ...
//
// Exit status: 0 on success, 1 on a refused or failed conversion (or a missing file for
// deps), 2 on bad usage.
#include <Inventor/C/basic.h>
#include <Inventor/SoDB.h>

#include <exception>
#include <iostream>
#include <string>

#include "Commands.h"
#include "QetzFltLibrary.h"
#include "ToolSupport.h"

namespace {

const char* const kMainUsage =
    "usage: qetzflt <command> [options]\n"
    "\n"
    "commands:\n"
    "  convert IN.flt [-o OUT.iv] [--binary] [--vrml2] [--yup]   write the scene as an Inventor, VRML or glTF file\n"
    "  convert IN.flt...|FOLDER -o DIR [--format iv|ivb|wrl|glb] [--jobs N] [--strict]\n"
    "                                                            convert many databases, one line each\n"
    "  info IN.flt [--tree]                                      what the database and its scene hold\n"
    "  deps IN.flt                                               referenced databases and texture files\n"
    "  stats IN.flt                                              write and print the record statistics (IN.flt.stat)\n"
    "  render IN.flt -o OUT.png [--size WxH] [--view iso|top|front]   draw the scene into a PNG picture\n"
    "  view IN.flt [--classic] [--no-textures] [--screenshot OUT.png]  look at the scene in a window\n"
    "                                                            (c: conversion, t: textures, m: messages;\n"
    "                                                            built where SoQt is found)\n"
    "\n"
    "\n"
    "options of the commands that convert (convert, info, render, view):\n"
    "  --classic     the classic conversion, exactly what convertFrom returns (default: the\n"
    "                database drawn as the OpenFlight format means it)\n"
    "  --log         write the library's log next to the input (IN.flt.log)\n"
    "  --log-dir DIR write that log into DIR instead (DIR/IN.flt.log)\n"
    "  --no-log      no log, the default\n"
    "  -h, --help    the options of a command: 'qetzflt <command> --help'\n"
    "  --version     (alone) the library's name and version, its path and Coin's version\n"
    "Exit status: 0 success, 1 refused or failed conversion, 2 bad usage.\n";

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << kMainUsage;
        return kUsage;
    }
    const std::string command = argv[1];
    if (command == "-h" || command == "--help" || command == "help") {
        std::cout << kMainUsage;
        return kOk;
    }
    if (command == "--version") {
        SoDB::init();
        std::cout << "qetzflt, Coin " << SoDB::getVersion() << " (built with " << COIN_VERSION << ")\n";
        QetzFltLibrary* library = loadLibrary();
        if (!library) return kFailed;
        std::cout << (library->getProductName ? library->getProductName() : "libQetzFlt") << " "
                  << (library->getVersion ? library->getVersion() : "(version unknown)") << ", " << library->path()
                  << "\n";
        return kOk;
    }
    // A file system that refuses (a loop of links, a name too long, a folder gone) ends the
    // command with its reason, never an abort.
    try {
        // The viewer is a program of its own: nothing to set up here for it.
        if (command == "view") return commandView(argc, argv);
        SoDB::init();
        if (command == "convert") return commandConvert(argc, argv);
        if (command == "info") return commandInfo(argc, argv);
        if (command == "deps") return commandDeps(argc, argv);
        if (command == "stats") return commandStats(argc, argv);
        if (command == "render") return commandRender(argc, argv);
    } catch (const std::exception& e) {
        std::cerr << "qetzflt " << command << ": " << e.what() << "\n";
        return kFailed;
    }
    std::cerr << "qetzflt: unknown command " << command << "\n" << kMainUsage;
    return kUsage;
}
