// qetzflt-bench: times conversions against the floor of merely reading a file and walking
// its record headers, with the per-record log dump on and off, and reports peak memory.
//
//   qetzflt-bench [--runs N] [--objects FILE]... [--small FILE] FILE...
//
// For each FILE the floor, the conversion with the log and the conversion without it run
// interleaved, N times each (default 5); the table shows medians and their ratios to the
// floor. Peak memory is the maximum resident size of a fresh process converting the file
// once, log on, next to the file's size.
// A database of many objects (--objects) is loaded without the log, its first bounding box
// taken, and its scene released, by the host's unref() and by qetzfltReleaseScene in turn;
// its load per MiB is set against the last FILE's, and its load against the time Coin alone
// takes to make the nodes of such a scene in a plain loop. A small database (--small) is converted
// many times over, to show what a conversion costs above reading and walking it.
#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "QetzFlt/QetzFlt.h"

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

// Reads the file into one buffer and walks every record header, touching every byte.
uint64_t floorPass(const std::string& path)
{
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    const std::streamsize size = in.tellg();
    std::vector<unsigned char> buffer(static_cast<size_t>(size));
    in.seekg(0);
    in.read(reinterpret_cast<char*>(buffer.data()), size);
    uint64_t sum = 0;
    size_t offset = 0;
    while (offset + 4 <= buffer.size()) {
        const unsigned opcode = (buffer[offset] << 8) | buffer[offset + 1];
        const unsigned length = (buffer[offset + 2] << 8) | buffer[offset + 3];
        if (length < 4 || offset + length > buffer.size()) break;
        for (size_t i = offset; i < offset + length; ++i) sum += buffer[i];
        sum += opcode;
        offset += length;
    }
    return sum;
}

double convertOnce(const std::string& path, bool log, bool asAuthored = false, bool noLogFile = false)
{
    // A previous run's log is removed first: truncating a large file costs the kernel time
    // that a user converting the database once never pays.
    std::remove((path + ".log").c_str());
    const unsigned int logChoice = noLogFile ? QETZFLT_LOG_NONE : log ? QETZFLT_LOG_FILE : QETZFLT_LOG_NO_DUMP;
    const unsigned int options =
        QETZFLT_NO_STANDARD_OUTPUT | logChoice | (asAuthored ? QETZFLT_BUILD_AS_AUTHORED : QETZFLT_BUILD_CLASSIC);
    const Clock::time_point start = Clock::now();
    SoSeparator* root = qetzfltConvert(path.c_str(), options);
    const double elapsed = seconds(start);
    // A converted root comes back with one reference, a refused one with none.
    if (root->getRefCount() == 0) root->ref();
    root->unref();
    // And removed after, once on disk: the kernel writing a gigabyte of log out would
    // otherwise share the processors and the disk with the measurements that follow (the log
    // starts its writing as it goes, and writing under way is not called off by a removal).
    if (log) {
        const int fd = ::open((path + ".log").c_str(), O_RDONLY | O_CLOEXEC);
        if (fd >= 0) {
            ::fsync(fd);
            ::close(fd);
        }
    }
    std::remove((path + ".log").c_str());
    return elapsed;
}

// The phases a host goes through with a database of many objects.
struct ObjectTimes {
    double load = 0, box = 0, release = 0;
};

ObjectTimes loadBoxRelease(const std::string& path, bool throughLibrary, bool asAuthored = false)
{
    ObjectTimes times;
    Clock::time_point start = Clock::now();
    SoSeparator* root = qetzfltConvert(path.c_str(), QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_LOG_NONE |
                                                         (asAuthored ? QETZFLT_BUILD_AS_AUTHORED : QETZFLT_BUILD_CLASSIC));
    times.load = seconds(start);
    if (root->getRefCount() == 0) root->ref();
    start = Clock::now();
    SoGetBoundingBoxAction box{SbViewportRegion(640, 480)};
    box.apply(root);
    times.box = seconds(start);
    start = Clock::now();
    if (throughLibrary)
        qetzfltReleaseScene(root);
    else
        root->unref();
    times.release = seconds(start);
    return times;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Peak resident size, in bytes, of a fresh process that converts the file once.
long peakBytes(const char* self, const std::string& path)
{
    const pid_t child = fork();
    if (child == 0) {
        execl(self, self, "--peak-child", path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    struct rusage usage {};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return -1;
    return usage.ru_maxrss * 1024L;
}

struct Row {
    std::string name;
    double mib = 0, floor = 0, logOn = 0, logOff = 0, authored = 0;
    long peak = -1;
};

double mebibytes(const std::string& path) { return std::filesystem::file_size(path) / (1024.0 * 1024.0); }

std::string fileName(const std::string& path) { return std::filesystem::path(path).filename().string(); }

// The objects of the database, as the inspection counts its object records.
long objectRecords(const std::string& path)
{
    long count = 0;
    qetzfltInspect(
        path.c_str(),
        [](void* user, const char* key, const char* value) {
            if (std::strcmp(key, "record") == 0 && std::strncmp(value, "4 ", 2) == 0)
                *static_cast<long*>(user) = std::atol(value + 2);
        },
        &count);
    return count;
}

// What Coin alone takes to make the nodes such a scene holds, as plainly as a program can: a
// named separator per 100 objects, and per object a named separator holding a material
// binding, a named material of one colour and a named face set of one triangle. No
// conversion can take less than this for the same scene.
double coinAlone(long objects)
{
    const SbName material("faceVertexColorNormalUVSoMaterialSet"), faceSet("SoIFSVertexColorNormalUV");
    const SbColor color(0.5f, 0.6f, 0.2f);
    const int32_t triangle[4] = {0, 1, 2, -1}, first = 0;
    auto* vertices = new SoVertexProperty;
    vertices->ref();
    auto* root = new SoSeparator;
    root->ref();
    const Clock::time_point start = Clock::now();
    SoSeparator* group = nullptr;
    for (long i = 0; i < objects; ++i) {
        if (i % 100 == 0) {
            group = new SoSeparator;
            group->setName(("g" + std::to_string(i / 100)).c_str());
            root->addChild(group);
        }
        auto* object = new SoSeparator;
        object->setName(("o" + std::to_string(i)).c_str());
        auto* binding = new SoMaterialBinding;
        binding->value = SoMaterialBinding::PER_FACE_INDEXED;
        object->addChild(binding);
        auto* look = new SoMaterial;
        look->setName(material);
        look->diffuseColor.setValues(0, 1, &color);
        look->ambientColor.setValues(0, 1, &color);
        object->addChild(look);
        auto* face = new SoIndexedFaceSet;
        face->vertexProperty = vertices;
        face->coordIndex.setValues(0, 4, triangle);
        face->materialIndex.setValues(0, 1, &first);
        face->setName(faceSet);
        object->addChild(face);
        group->addChild(object);
    }
    const double elapsed = seconds(start);
    qetzfltReleaseScene(root);
    vertices->unref();
    return elapsed;
}

// Loads, first bounding boxes and releases of databases of many objects, against the per-MiB
// log-off time of the terrain given and the time Coin alone takes to make their nodes; and
// the as-authored load, the one the tool makes.
void objectTable(const std::vector<std::string>& files, int runs, const Row* terrain)
{
    std::printf("\n%-22s %9s %9s %15s %11s %9s %10s %10s %12s %17s %21s\n", "many objects", "MiB", "floor s",
                "load s (x)", "load s/MiB", "box s", "unref s", "release s", "(x unref)", "Coin alone s (x)",
                "as-authored s (x load)");
    for (const std::string& path : files) {
        const long objects = objectRecords(path);
        std::vector<double> floors, loads, boxes, plain, ours, alone, authored;
        floorPass(path);
        for (int r = 0; r < runs; ++r) {
            Clock::time_point start = Clock::now();
            floorPass(path);
            floors.push_back(seconds(start));
            const ObjectTimes a = loadBoxRelease(path, false);
            const ObjectTimes b = loadBoxRelease(path, true);
            loads.insert(loads.end(), {a.load, b.load});
            boxes.insert(boxes.end(), {a.box, b.box});
            plain.push_back(a.release);
            ours.push_back(b.release);
            alone.push_back(coinAlone(objects));
            authored.push_back(loadBoxRelease(path, true, true).load);
        }
        const double mib = mebibytes(path), floor = median(floors), load = median(loads);
        std::printf("%-22s %9.1f %9.4f %7.3f (%5.1f) %11.4f %9.3f %10.3f %10.3f %12.2f %9.3f (%5.2f) %13.3f (%5.2f)\n",
                    fileName(path).c_str(), mib, floor, load, load / floor, load / mib, median(boxes), median(plain),
                    median(ours), median(ours) / median(plain), median(alone), median(alone) / load, median(authored),
                    median(authored) / load);
        if (terrain)
            std::printf("  load per MiB over %s's log-off per MiB: %.2f\n", terrain->name.c_str(),
                        (load / mib) / (terrain->logOff / terrain->mib));
    }
}

// What a small database's conversion (log off) costs above reading and walking it, warm.
void smallRow(const std::string& path, int runs)
{
    std::vector<double> floors, logOff, noLog;
    for (int r = 0; r < 10; ++r) convertOnce(path, false);
    for (int r = 0; r < runs; ++r) {
        Clock::time_point start = Clock::now();
        floorPass(path);
        floors.push_back(seconds(start));
        logOff.push_back(convertOnce(path, false));
        noLog.push_back(convertOnce(path, false, false, true));
    }
    const double floor = median(floors);
    std::printf("\nsmall database %s (%.1f KiB), medians of %d runs: floor %.3f ms; above it, log off %.3f ms, "
                "no log file %.3f ms\n",
                fileName(path).c_str(), mebibytes(path) * 1024, runs, floor * 1e3, (median(logOff) - floor) * 1e3,
                (median(noLog) - floor) * 1e3);
}

}  // namespace

int main(int argc, char** argv)
{
    SoDB::init();
    if (argc == 3 && std::strcmp(argv[1], "--peak-child") == 0) return convertOnce(argv[2], true) >= 0 ? 0 : 1;
    int runs = 5;
    std::vector<std::string> files, objectFiles;
    std::string smallFile;
    bool unknownOption = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc)
            runs = std::max(1, std::atoi(argv[++i]));
        else if (std::strcmp(argv[i], "--objects") == 0 && i + 1 < argc)
            objectFiles.push_back(argv[++i]);
        else if (std::strcmp(argv[i], "--small") == 0 && i + 1 < argc)
            smallFile = argv[++i];
        else if (argv[i][0] == '-')
            unknownOption = true;
        else
            files.push_back(argv[i]);
    }
    if (unknownOption || (files.empty() && objectFiles.empty() && smallFile.empty())) {
        std::cerr << "usage: qetzflt-bench [--runs N] [--objects FILE]... [--small FILE] FILE...\n";
        return 2;
    }
    std::vector<std::string> named = files;
    named.insert(named.end(), objectFiles.begin(), objectFiles.end());
    if (!smallFile.empty()) named.push_back(smallFile);
    for (const std::string& path : named) {
        std::error_code error;
        if (!std::filesystem::is_regular_file(path, error)) {
            std::cerr << "qetzflt-bench: no such database: " << path << "\n";
            return 2;
        }
    }

    // Peaks first: a child's peak counts the memory it held at the fork, so the parent must
    // still be small.
    std::vector<long> peaks;
    for (const std::string& path : files) peaks.push_back(peakBytes(argv[0], path));

    std::vector<Row> rows;
    for (const std::string& path : files) {
        Row row;
        row.peak = peaks[rows.size()];
        row.name = fileName(path);
        row.mib = mebibytes(path);
        std::vector<double> floors, ons, offs, authored;
        uint64_t checksum = 0;
        floorPass(path);  // warm the page cache
        for (int r = 0; r < runs; ++r) {
            Clock::time_point start = Clock::now();
            checksum += floorPass(path);
            floors.push_back(seconds(start));
            ons.push_back(convertOnce(path, true));
            offs.push_back(convertOnce(path, false));
            authored.push_back(convertOnce(path, false, true));
        }
        row.floor = median(floors);
        row.logOn = median(ons);
        row.logOff = median(offs);
        row.authored = median(authored);
        rows.push_back(row);
        std::fprintf(stderr, "%s done (checksum %llu)\n", row.name.c_str(), static_cast<unsigned long long>(checksum));
    }

    std::printf("%-22s %9s %9s %16s %16s %11s %11s %17s %22s\n", "file", "MiB", "floor s", "log on s (x)",
                "log off s (x)", "on s/MiB", "off s/MiB", "peak MiB (x size)", "as-authored s (x off)");
    for (const Row& r : rows) {
        std::printf("%-22s %9.1f %9.4f %8.3f (%5.1f) %8.3f (%5.1f) %11.4f %11.4f %9.1f (%5.2f) %14.3f (%5.2f)\n",
                    r.name.c_str(), r.mib, r.floor, r.logOn, r.logOn / r.floor, r.logOff, r.logOff / r.floor,
                    r.logOn / r.mib, r.logOff / r.mib, r.peak / (1024.0 * 1024.0), r.peak / (r.mib * 1024 * 1024),
                    r.authored, r.authored / r.logOff);
    }
    if (rows.size() >= 2) {
        const Row& big = rows.back();
        const Row& small = rows[rows.size() - 2];
        std::printf("\nlinearity, time per MiB of %s over %s: log on %.2f, log off %.2f\n", big.name.c_str(),
                    small.name.c_str(), (big.logOn / big.mib) / (small.logOn / small.mib),
                    (big.logOff / big.mib) / (small.logOff / small.mib));
    }
    objectTable(objectFiles, runs, rows.empty() ? nullptr : &rows.back());
    if (!smallFile.empty()) smallRow(smallFile, std::max(200, runs * 40));
    return 0;
}
