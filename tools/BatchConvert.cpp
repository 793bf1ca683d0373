// qetzflt convert on many databases: each converted by a qetzflt process of its own (the
// library converts one database at a time per process), at most --jobs at once, with one
// line per database and a total.
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "QetzFltLibrary.h"
#include "ToolSupport.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

struct Item {
    std::string input;     // as found: the name given, or below the folder given
    std::string relative;  // where it goes below -o DIR (and --log-dir DIR)
    std::string output;
    std::string problem;   // refused before any conversion (two inputs, one output)
    // What the worker said.
    bool done = false;
    bool ok = false;
    long faces = -1;
    int levels[4] = {0, 0, 0, 0};
    double seconds = 0;
    std::string text;  // the worker's other lines (errors, what was left out)
};

struct Worker {
    pid_t pid = -1;
    int fd = -1;
    size_t item = 0;
    std::string output;
    Clock::time_point start;
};

struct Format {
    const char* name;
    const char* extension;
    const char* flag;  // what the worker is given, or null
};

const Format kFormats[] = {{"iv", ".iv", nullptr}, {"ivb", ".iv", "--binary"}, {"wrl", ".wrl", "--vrml2"},
                           {"glb", ".glb", nullptr}};

// The databases of a folder and its subfolders, told by their first bytes, in name order;
// each keeps the folder's own name in front of its place.
void collectFolder(QetzFltLibrary& library, const std::string& folder, std::vector<Item>& items)
{
    const fs::path top = fs::absolute(folder).lexically_normal();
    const fs::path base = top.has_filename() ? top.parent_path() : top.parent_path().parent_path();
    std::vector<Item> found;
    std::error_code ec;
    for (fs::recursive_directory_iterator it(folder, fs::directory_options::skip_permission_denied, ec), end;
         !ec && it != end; it.increment(ec)) {
        std::error_code typeError;
        if (!it->is_regular_file(typeError)) continue;
        const std::string path = it->path().string();
        if (library.isDatabase && !library.isDatabase(path.c_str())) continue;
        if (!library.isDatabase && it->path().extension() != ".flt") continue;
        Item item;
        item.input = path;
        item.relative = fs::absolute(it->path()).lexically_normal().lexically_relative(base).string();
        found.push_back(item);
    }
    if (ec) std::cerr << "qetzflt convert: " << folder << ": " << ec.message() << "\n";
    std::sort(found.begin(), found.end(), [](const Item& a, const Item& b) { return a.relative < b.relative; });
    items.insert(items.end(), found.begin(), found.end());
}

std::string plural(long n, const char* word) { return std::to_string(n) + " " + word + (n == 1 ? "" : "s"); }

std::string messageCounts(const int levels[4])
{
    return "messages: " + plural(levels[3], "error") + ", " + plural(levels[2], "warning") + ", " +
           plural(levels[1], "note");
}

// Reads the worker's line "qetzflt-batch FACES NOTES WARNINGS ERRORS"; the other lines are
// kept as its text.
void readReport(Item& item, const std::string& said)
{
    std::istringstream lines(said);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(kBatchReport, 0) == 0) {
            std::istringstream in(line.substr(std::strlen(kBatchReport)));
            in >> item.faces >> item.levels[1] >> item.levels[2] >> item.levels[3];
            continue;
        }
        for (const char* prefix : {"qetzflt convert: ", "qetzflt: "})
            if (line.rfind(prefix, 0) == 0) line = line.substr(std::strlen(prefix));
        item.text += line + "\n";
    }
}

void printItem(const Item& item)
{
    if (item.ok) {
        std::cout << "ok      " << item.input << " -> " << item.output << "  ";
        if (item.faces >= 0) std::cout << plural(item.faces, "face") << "  ";
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%.2f s", item.seconds);
        std::cout << seconds << "  " << messageCounts(item.levels) << "\n";
    } else {
        std::cout << "FAILED  " << item.input << "\n";
    }
    std::istringstream lines(item.problem.empty() ? item.text : item.problem + "\n");
    for (std::string line; std::getline(lines, line);) std::cout << "        " << line << "\n";
    std::cout.flush();
}

std::string selfPath()
{
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : self.string();
}

}  // namespace

int convertBatch(const Arguments& args, const char* usage)
{
    const std::string formatName = args.value("--format").empty() ? "iv" : args.value("--format");
    const Format* format = nullptr;
    for (const Format& f : kFormats)
        if (formatName == f.name) format = &f;
    if (!format) return usageError("convert", "--format is iv, ivb, wrl or glb", usage);
    if (args.has("--binary") || args.has("--vrml2"))
        return usageError("convert", "a batch takes --format ivb or wrl instead of --binary or --vrml2", usage);
    int jobs = 1;
    if (!args.value("--jobs").empty()) {
        try {
            size_t used = 0;
            jobs = std::stoi(args.value("--jobs"), &used);
            if (used != args.value("--jobs").size()) jobs = 0;
        } catch (...) {
            jobs = 0;
        }
        if (jobs < 1 || jobs > 256) return usageError("convert", "--jobs takes a number from 1 to 256", usage);
    }
    QetzFltLibrary* library = loadLibrary();
    if (!library) return kFailed;
    const std::string self = selfPath();
    if (self.empty()) {
        std::cerr << "qetzflt convert: cannot tell where this qetzflt is, to start its workers\n";
        return kFailed;
    }

    const std::string outDir = args.value("-o");
    std::vector<Item> items;
    for (const std::string& input : args.positional) {
        std::error_code ec;
        if (fs::is_directory(input, ec)) {
            const size_t before = items.size();
            collectFolder(*library, input, items);
            if (items.size() == before) std::cerr << "qetzflt convert: " << input << ": no OpenFlight database in it\n";
        } else {
            Item item;
            item.input = input;
            item.relative = fs::path(input).filename().string();
            items.push_back(item);
        }
    }
    if (items.empty()) return kFailed;
    std::set<std::string> outputs;
    for (Item& item : items) {
        item.output = (fs::path(outDir) / fs::path(item.relative).replace_extension(format->extension)).string();
        if (!outputs.insert(fs::absolute(item.output).lexically_normal().string()).second)
            item.problem = "not converted: another input of the batch is written to " + item.output;
    }

    const bool progress = isatty(STDERR_FILENO) && items.size() > 1;
    const Clock::time_point begin = Clock::now();
    std::vector<Worker> running;
    size_t next = 0, printed = 0, finished = 0;
    auto drawProgress = [&]() {
        if (!progress) return;
        std::cerr << "\r\033[K[" << finished << "/" << items.size() << "] converting, " << running.size()
                  << " at once" << std::flush;
    };
    size_t drawn = items.size() + 1;  // the count last shown: redrawn when it changes
    auto flushPrinted = [&]() {
        const bool ready = printed < items.size() && items[printed].done;
        if (!ready && drawn == finished) return;
        if (progress) std::cerr << "\r\033[K" << std::flush;
        while (printed < items.size() && items[printed].done) printItem(items[printed++]);
        drawProgress();
        drawn = finished;
    };
    auto start = [&](size_t index) {
        Item& item = items[index];
        std::vector<std::string> argv{self, "convert", item.input, "-o", item.output, "--batch-item"};
        if (format->flag) argv.push_back(format->flag);
        for (const char* flag : {"--classic", "--yup", "--log"})
            if (args.has(flag) && !(std::string(format->name) == "glb" && std::string(flag) != "--log"))
                argv.push_back(flag);
        if (!args.value("--log-dir").empty()) {
            argv.push_back("--log-dir");
            argv.push_back((fs::path(args.value("--log-dir")) / fs::path(item.relative).parent_path()).string());
        }
        int fds[2];
        if (pipe(fds) != 0) {
            item.text = std::string("cannot start a worker: ") + std::strerror(errno) + "\n";
            item.done = true;
            return;
        }
        std::cout.flush();
        const pid_t pid = fork();
        if (pid == 0) {
            close(fds[0]);
            dup2(fds[1], STDOUT_FILENO);
            dup2(fds[1], STDERR_FILENO);
            close(fds[1]);
            std::vector<char*> pointers;
            for (std::string& a : argv) pointers.push_back(a.data());
            pointers.push_back(nullptr);
            execv(self.c_str(), pointers.data());
            std::fprintf(stderr, "cannot start %s: %s\n", self.c_str(), std::strerror(errno));
            _exit(kFailed);
        }
        close(fds[1]);
        if (pid < 0) {
            close(fds[0]);
            item.text = std::string("cannot start a worker: ") + std::strerror(errno) + "\n";
            item.done = true;
            return;
        }
        running.push_back({pid, fds[0], index, {}, Clock::now()});
    };

    while (printed < items.size()) {
        while (running.size() < static_cast<size_t>(jobs) && next < items.size()) {
            const size_t index = next++;
            if (!items[index].problem.empty()) {
                items[index].done = true;
                ++finished;
            } else {
                start(index);
                if (items[index].done) ++finished;
            }
        }
        flushPrinted();
        if (running.empty()) continue;
        std::vector<pollfd> fds;
        for (const Worker& w : running) fds.push_back({w.fd, POLLIN, 0});
        if (poll(fds.data(), fds.size(), -1) < 0 && errno != EINTR) break;
        for (size_t i = fds.size(); i-- > 0;) {
            if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
            Worker& w = running[i];
            char buffer[4096];
            const ssize_t n = read(w.fd, buffer, sizeof buffer);
            if (n > 0) {
                w.output.append(buffer, static_cast<size_t>(n));
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
            // The worker closed its end: it has ended, or is about to.
            close(w.fd);
            int status = 0;
            while (waitpid(w.pid, &status, 0) < 0 && errno == EINTR) {
            }
            Item& item = items[w.item];
            item.seconds = std::chrono::duration<double>(Clock::now() - w.start).count();
            readReport(item, w.output);
            item.ok = WIFEXITED(status) && WEXITSTATUS(status) == kOk;
            if (!WIFEXITED(status)) item.text += "the worker ended by signal " + std::to_string(WTERMSIG(status)) + "\n";
            item.done = true;
            ++finished;
            running.erase(running.begin() + static_cast<long>(i));
        }
    }
    if (progress) std::cerr << "\r\033[K" << std::flush;

    long faces = 0;
    int levels[4] = {0, 0, 0, 0};
    size_t failed = 0, withErrors = 0;
    for (const Item& item : items) {
        if (!item.ok) ++failed;
        if (item.levels[3] > 0) ++withErrors;
        faces += std::max(item.faces, 0L);
        for (int l = 1; l <= 3; ++l) levels[l] += item.levels[l];
    }
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.2f s",
                  std::chrono::duration<double>(Clock::now() - begin).count());
    std::cout << "total: " << plural(static_cast<long>(items.size()), "database") << ", "
              << items.size() - failed << " written, " << failed << " failed, " << plural(faces, "face") << ", "
              << seconds << ", " << messageCounts(levels) << "\n";
    if (failed > 0) return kFailed;
    if (args.has("--strict") && withErrors > 0) {
        std::cerr << "qetzflt convert: " << withErrors << (withErrors == 1 ? " database" : " databases")
                  << " reported errors (--strict)\n";
        return kFailed;
    }
    return kOk;
}
