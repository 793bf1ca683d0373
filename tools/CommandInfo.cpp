// qetzflt info, deps and stats: what a database holds, the files it needs, its statistics.
#include <Inventor/nodes/SoSeparator.h>

#include <sys/stat.h>

#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "Commands.h"
#include "QetzFltLibrary.h"
#include "convert/FltReferenceChain.h"
#include "reader/FltReferencePath.h"
#include "SceneSummary.h"
#include "ToolSupport.h"

namespace {

const char* const kInfoUsage =
    "usage: qetzflt info IN.flt [--tree] [--classic]\n"
    "\n"
    "Converts the database and tells what it holds: format revision, units, packed-colour mode,\n"
    "record counts per opcode, the node, face set, face, vertex and triangle counts of the\n"
    "scene, its bounding box and the console messages of the conversion.\n"
    "Repeated messages are printed once, with how many more times they came.\n"
    "  --tree     also print the hierarchy of groups, named nodes and face sets\n"
    "  --classic  the scene of the classic conversion instead of the as-authored one\n"
    "  --log, --log-dir DIR, --no-log   the library's log, as for convert (default: none)\n";

const char* const kDepsUsage =
    "usage: qetzflt deps IN.flt\n"
    "\n"
    "Lists every external reference and texture file of the database and of the databases it\n"
    "references, the path each resolves to, and whether that file exists.\n"
    "Exit status 1 when a file is missing.\n";

const char* const kStatsUsage =
    "usage: qetzflt stats IN.flt\n"
    "\n"
    "Writes the record counts per opcode to IN.flt.stat and prints that file.\n";

// The facts qetzfltInspect reports about one database.
struct DatabaseFacts {
    std::string formatRevision;
    std::string units;
    bool packedColorMode = false;
    std::string id;
    std::vector<std::string> records;  // "<opcode> <count> <heading>"
    std::string recordTotal;
    std::vector<std::string> references;
    std::vector<std::string> textures;  // "<index> <name>"
};

void collectFact(void* user, const char* key, const char* value)
{
    auto* facts = static_cast<DatabaseFacts*>(user);
    const std::string k = key ? key : "";
    const std::string v = value ? value : "";
    if (k == "formatRevision") facts->formatRevision = v;
    else if (k == "units") facts->units = v;
    else if (k == "packedColorMode") facts->packedColorMode = v == "1";
    else if (k == "id") facts->id = v;
    else if (k == "record") facts->records.push_back(v);
    else if (k == "recordTotal") facts->recordTotal = v;
    else if (k == "externalReference") facts->references.push_back(v);
    else if (k == "texturePattern") facts->textures.push_back(v);
}

// 0 when the database was read; 1 when it was not; -1 when the library cannot tell.
int inspect(QetzFltLibrary& library, const std::string& path, DatabaseFacts& facts)
{
    if (!library.inspect) return -1;
    return library.inspect(path.c_str(), collectFact, &facts) == 0 ? 0 : 1;
}

std::string unitsName(const std::string& code)
{
    if (code == "0") return "metres";
    if (code == "1") return "kilometres";
    if (code == "4") return "feet";
    if (code == "5") return "inches";
    if (code == "8") return "nautical miles";
    return "unknown (code " + code + ")";
}

// Each distinct message once, where it first came, with how many more times it came: a
// database with a thousand faces of one fault gives one line, not a thousand.
void printMessages(const std::vector<ConsoleMessage>& messages)
{
    std::cout << "messages: " << (messages.empty() ? "none" : std::to_string(messages.size())) << "\n";
    std::vector<std::pair<std::string, int>> distinct;  // "[level L] text", repeats
    std::map<std::string, size_t> seen;
    for (const ConsoleMessage& m : messages) {
        std::string text = m.text;
        while (!text.empty() && text.back() == '\n') text.pop_back();
        const std::string line = "[level " + std::to_string(m.level) + "] " + text;
        const auto [it, added] = seen.emplace(line, distinct.size());
        if (added) distinct.push_back({line, 0});
        else ++distinct[it->second].second;
    }
    for (const auto& [line, more] : distinct) {
        std::cout << "  " << line << "\n";
        if (more > 0) std::cout << "  ... and " << more << " more like this\n";
    }
}

void printRecords(const DatabaseFacts& facts)
{
    std::cout << "records: " << facts.recordTotal << "\n";
    for (const std::string& line : facts.records) {
        std::istringstream in(line);
        int opcode = 0, count = 0;
        in >> opcode >> count;
        std::string heading;
        std::getline(in >> std::ws, heading);
        std::cout << "  " << std::setw(4) << opcode << "  " << std::left << std::setw(34) << heading << std::right
                  << std::setw(8) << count << "\n";
    }
}

void printScene(const SceneSummary& s)
{
    std::cout << "scene:\n"
              << "  nodes: " << s.nodes << " (" << s.groups << " groups)\n"
              << "  face sets: " << s.faceSets << "\n"
              << "  faces: " << s.faces << "\n"
              << "  vertices: " << s.vertices << "\n"
              << "  triangles: " << s.triangles << "\n"
              << "  textures: " << s.textures << "\n";
    if (s.boundingBox.isEmpty()) {
        std::cout << "  bounding box: empty\n";
    } else {
        const SbVec3f& lo = s.boundingBox.getMin();
        const SbVec3f& hi = s.boundingBox.getMax();
        std::cout << "  bounding box: (" << lo[0] << ", " << lo[1] << ", " << lo[2] << ") to (" << hi[0] << ", "
                  << hi[1] << ", " << hi[2] << ")\n";
    }
}

// The file a conversion opens for a reference, by the library's own rule: the referencing
// file's path up to its last slash, then the name.
std::string referencePath(const std::string& name, const std::string& database)
{
    const size_t slash = database.find_last_of('/');
    const std::string prefix = slash == std::string::npos ? std::string() : database.substr(0, slash + 1);
    return fltpath::externalReference(prefix, name);
}

// What tells a file from others under any name, links followed.
std::pair<uint64_t, uint64_t> identityOf(const std::string& path)
{
    struct stat info;
    if (::stat(path.c_str(), &info) != 0) return {};
    return {static_cast<uint64_t>(info.st_dev), static_cast<uint64_t>(info.st_ino)};
}

// "found", or "MISSING" with the reason when it is not plain absence.
std::string presence(bool found, const std::string& why)
{
    if (found) return "found";
    return why == "no such file" ? "MISSING" : "MISSING (" + why + ")";
}

// Lists the database's textures and references, each referenced database's below its
// reference, indented by depth. Each file is listed once (by identity, whatever names reach
// it), chains end at the library's depth limit, and the walk keeps its own stack: a chain of
// any length costs no recursion. Returns the number of missing files.
int listDependencies(QetzFltLibrary& library, const std::string& database)
{
    struct Frame {
        std::string path;
        int depth;
        DatabaseFacts facts;
        size_t next = 0;
    };
    std::vector<Frame> stack;
    std::set<std::pair<uint64_t, uint64_t>> listed{identityOf(database)};
    int missing = 0;
    auto open = [&](const std::string& path, int depth) {
        Frame frame{path, depth, {}};
        if (inspect(library, path, frame.facts) != 0) return;
        const std::string directory = directoryOf(path);
        const std::string indent(2 * depth, ' ');
        for (const std::string& entry : frame.facts.textures) {
            const std::string name = entry.substr(entry.find(' ') + 1);
            const std::string resolved = resolveAgainst(name, directory);
            std::string why;
            const bool found = isRegularFile(resolved, &why);
            missing += found ? 0 : 1;
            std::cout << indent << "texture    " << name << "  ->  " << resolved << "  " << presence(found, why) << "\n";
        }
        stack.push_back(std::move(frame));
    };
    open(database, 0);
    const std::string cwd = workingDirectory();
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next == frame.facts.references.size()) {
            stack.pop_back();
            continue;
        }
        const std::string name = frame.facts.references[frame.next++];
        if (name.empty()) continue;
        const int depth = frame.depth;
        const std::string opened = referencePath(name, frame.path);
        const std::string indent(2 * depth, ' ');
        std::string why;
        const bool found = isRegularFile(opened, &why);
        missing += found ? 0 : 1;
        std::cout << indent << "reference  " << name << "  ->  " << resolveAgainst(opened, cwd) << "  "
                  << presence(found, why) << "\n";
        if (!found) continue;
        if (!listed.insert(identityOf(opened)).second) {
            std::cout << indent << "  (listed above)\n";
        } else if (depth + 1 > static_cast<int>(FltReferenceChain::kMaxDepth)) {
            std::cout << indent << "  (nested more than " << FltReferenceChain::kMaxDepth
                      << " levels deep: not followed, as a conversion does not follow it)\n";
        } else {
            open(opened, depth + 1);  // `frame` may move: nothing of it is used after
        }
    }
    return missing;
}

// The single input file of a subcommand, or an exit status through `status`.
bool singleInput(int argc, char** argv, const char* command, const char* usage, const std::vector<std::string>& flags,
                 Arguments& args, int& status)
{
    args = parseArguments(argc, argv, 2, flags, {});
    if (args.help) {
        std::cout << usage;
        status = kOk;
        return false;
    }
    if (!args.error.empty()) {
        status = usageError(command, args.error, usage);
        return false;
    }
    if (args.positional.size() != 1) {
        status = usageError(command, "expects one input file", usage);
        return false;
    }
    return true;
}

}  // namespace

int commandInfo(int argc, char** argv)
{
    Arguments args;
    int status = kOk;
    if (!singleInput(argc, argv, "info", kInfoUsage, {"--tree"}, args, status)) return status;
    const std::string input = args.positional[0];

    Conversion conversion;
    const bool converted = conversion.run(input, false, args);
    QetzFltLibrary* library = loadLibrary();
    if (!library) return kFailed;
    // Missing, or no database at all: the one message on standard error says it.
    if (!isRegularFile(input) || (library->isDatabase && !library->isDatabase(input.c_str()))) return kFailed;

    std::cout << "database: " << input << "\n";
    DatabaseFacts facts;
    const int inspected = inspect(*library, input, facts);
    if (inspected == 0) {
        std::cout << "name: " << facts.id << "\n"
                  << "format revision: " << facts.formatRevision << "\n"
                  << "units: " << unitsName(facts.units) << "\n"
                  << "packed colour mode: " << (facts.packedColorMode ? "yes" : "no") << "\n";
        printRecords(facts);
    } else if (inspected < 0) {
        std::cout << "(this libQetzFlt.so does not report format revision, units and record counts)\n";
    }
    std::cout << "conversion: " << (conversion.classic ? "classic" : "as-authored") << "\n";
    if (converted) {
        printScene(summarizeScene(conversion.root));
    } else {
        std::cout << "scene: not converted\n";
    }
    printMessages(conversion.messages);
    if (converted && args.has("--tree")) {
        std::cout << "tree:\n";
        std::ostringstream tree;
        printTree(tree, conversion.root);
        std::istringstream lines(tree.str());
        for (std::string line; std::getline(lines, line);) std::cout << "  " << line << "\n";
    }
    return converted ? kOk : kFailed;
}

int commandDeps(int argc, char** argv)
{
    Arguments args;
    int status = kOk;
    if (!singleInput(argc, argv, "deps", kDepsUsage, {}, args, status)) return status;
    const std::string input = args.positional[0];
    QetzFltLibrary* library = loadLibrary();
    if (!library) return kFailed;
    if (!library->inspect) {
        std::cerr << "qetzflt deps: this libQetzFlt.so cannot list the files a database names\n";
        return kFailed;
    }
    std::string why;
    if (!isRegularFile(input, &why)) {
        std::cerr << "qetzflt: " << input << ": " << why << "\n";
        return kFailed;
    }
    DatabaseFacts facts;
    if (inspect(*library, input, facts) != 0) {
        std::cerr << "qetzflt: " << input << ": not an OpenFlight database\n";
        return kFailed;
    }
    std::cout << "database: " << input << "\n";
    const int missing = listDependencies(*library, input);
    if (missing > 0) {
        std::cout << missing << (missing == 1 ? " file is" : " files are") << " missing\n";
        return kFailed;
    }
    std::cout << "all files found\n";
    return kOk;
}

int commandStats(int argc, char** argv)
{
    Arguments args;
    int status = kOk;
    if (!singleInput(argc, argv, "stats", kStatsUsage, {}, args, status)) return status;
    const std::string input = args.positional[0];
    QetzFltLibrary* library = loadLibrary();
    if (!library) return kFailed;
    if (!library->writeStatistics) {
        std::cerr << "qetzflt stats: this libQetzFlt.so does not write statistics\n";
        return kFailed;
    }
    std::string why;
    if (!isRegularFile(input, &why)) {
        std::cerr << "qetzflt: " << input << ": " << why << "\n";
        return kFailed;
    }
    const std::string statFile = input + ".stat";
    const int written = library->writeStatistics(input.c_str());
    if (written == 2) {
        // Read, but the file cannot be written: the library's messages say why.
        std::cerr << "qetzflt stats: " << statFile << " not written";
        if (library->lastMessageCount && library->lastMessageText && library->lastMessageCount() > 0)
            std::cerr << ": " << library->lastMessageText(library->lastMessageCount() - 1);
        std::cerr << "\n";
        return kFailed;
    }
    if (written != 0 || !isRegularFile(statFile)) {
        std::cerr << "qetzflt stats: " << input << ": not an OpenFlight database, no statistics written\n";
        return kFailed;
    }
    std::ifstream in(statFile, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::cout << text;
    if (text.empty() || text.back() != '\n') std::cout << "\n";
    return kOk;
}
