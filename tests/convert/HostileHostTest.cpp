// What a careless host or a shared folder can do to a conversion: threads converting and
// writing to standard output at once, logs and statistics files that are links, pipes,
// folders or other names of a file.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <sstream>
#include <thread>

#include "ConvertSupport.h"

namespace fs = std::filesystem;

TEST(HostileHost, twoConvertingThreadsAndAWriterToStandardOutputLoseNothing)
{
    // Conversions take turns; each points standard output at its log while it runs, so
    // what the writer writes meanwhile lands in that log, and the rest where standard output
    // went. Nothing may crash, tear a line or be lost: 200 conversions of 200 files keep
    // 200 logs to count in.
    FltFixture db;
    db.header().push().group("g1").push().pop().pop();
    ScratchDir dir;
    constexpr int kConversions = 100;
    for (int t = 0; t < 2; ++t)
        for (int i = 0; i < kConversions; ++i) db.save(dir.file(std::to_string(t) + "-" + std::to_string(i) + ".flt"));
    SoDB::init();
    // Standard output stays with the process's buffer, as with a host that never points it
    // elsewhere: a first conversion leaves the library's route there for good, and the
    // threads then never see it swapped.
    CaptureStandardOutputFile out;
    CaptureStream err(std::cerr);
    qetzfltConvert(dir.file("0-0.flt").c_str(), QETZFLT_NO_STANDARD_OUTPUT)->unref();
    // The scenes are released after the threads end: Coin does not guard its nodes.
    std::vector<SoSeparator*> roots[2];
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&roots, &dir, t] {
            for (int i = 0; i < kConversions; ++i) {
                const std::string path = dir.file(std::to_string(t) + "-" + std::to_string(i) + ".flt");
                roots[t].push_back(qetzfltConvert(path.c_str(), QETZFLT_NO_STANDARD_OUTPUT));
                // The entry points that read without converting take their turns too.
                if (t == 1) {
                    EXPECT_EQ(qetzfltWriteStatistics(path.c_str()), 0);
                    EXPECT_EQ(qetzfltInspect(path.c_str(), [](void*, const char*, const char*) {}, nullptr), 0);
                }
            }
        });
    constexpr int kLines = 3000;
    threads.emplace_back([] {
        for (int i = 0; i < kLines; ++i) {
            const std::string line = "host line " + std::to_string(i) + "\n";
            std::cout.write(line.data(), static_cast<std::streamsize>(line.size()));
        }
    });
    for (std::thread& thread : threads) thread.join();
    std::string everything = out.text();
    for (int t = 0; t < 2; ++t) {
        ASSERT_EQ(roots[t].size(), size_t(kConversions));
        for (int i = 0; i < kConversions; ++i) {
            ASSERT_NE(roots[t][i], nullptr);
            EXPECT_EQ(roots[t][i]->getRefCount(), 1);
            roots[t][i]->unref();
            const std::string log = readFile(dir.file(std::to_string(t) + "-" + std::to_string(i) + ".flt.log"));
            EXPECT_NE(log.find("beginning of parsing\n"), std::string::npos);
            EXPECT_NE(log.find("\n GROUP RECORD \n"), std::string::npos);
            everything += log;
        }
    }
    // Every line arrived whole, once, between the library's own.
    std::vector<bool> seen(kLines, false);
    std::istringstream lines(everything);
    for (std::string line; std::getline(lines, line);) {
        const size_t at = line.find("host line ");
        if (at == std::string::npos) continue;
        ASSERT_EQ(at, 0u) << line;
        const int n = std::stoi(line.substr(10));
        ASSERT_TRUE(n >= 0 && n < kLines && !seen[n]) << line;
        seen[n] = true;
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), kLines);
}

TEST(HostileHost, logAndStatisticsFilesAreNeverWrittenThroughLinksPipesOrOtherNames)
{
    FltFixture db;
    db.header().push().group("g1").push().pop().pop();
    using Make = std::function<void(const std::string& file, const std::string& db, const std::string& victim)>;
    const struct {
        const char* what;
        const char* kind;  // in the message
        Make make;
    } cases[] = {
        {"link to a file of the user", "a symbolic link", [](auto& f, auto&, auto& v) { fs::create_symlink(v, f); }},
        {"link to the database itself", "a symbolic link", [](auto& f, auto& d, auto&) { fs::create_symlink(d, f); }},
        {"dangling link", "a symbolic link", [](auto& f, auto& d, auto&) { fs::create_symlink(d + ".nowhere", f); }},
        {"named pipe", "a named pipe", [](auto& f, auto&, auto&) { ASSERT_EQ(mkfifo(f.c_str(), 0600), 0); }},
        {"folder", "a folder", [](auto& f, auto&, auto&) { fs::create_directory(f); }},
        {"hard link to a file of the user", "a file with other names",
         [](auto& f, auto&, auto& v) { fs::create_hard_link(v, f); }},
    };
    for (const char* suffix : {".log", ".stat"}) {
        for (const auto& k : cases) {
            ScratchDir dir;
            const std::string path = dir.file("db.flt"), file = path + suffix, victim = dir.file("victim");
            db.save(path);
            writeFile(victim, "the user's own");
            SCOPED_TRACE(std::string(k.what) + " as " + suffix);
            k.make(file, path, victim);
            CaptureStream out(std::cout), err(std::cerr);
            if (std::string(suffix) == ".log") {  // converted, the log refused
                SoSeparator* root = qetzfltConvert(path.c_str(), QETZFLT_NO_ECHO);
                ASSERT_NE(root, nullptr);
                EXPECT_EQ(root->getRefCount(), 1);  // the conversion goes on
                root->unref();
            } else {  // read, the statistics refused
                EXPECT_EQ(qetzfltWriteStatistics(path.c_str()), 2);
            }
            ASSERT_GE(qetzfltLastMessageCount(), 1);
            const std::string message = qetzfltLastMessageText(qetzfltLastMessageCount() - 1);
            EXPECT_NE(message.find(file + " is " + k.kind), std::string::npos) << message;
            EXPECT_EQ(qetzfltLastMessageLevel(qetzfltLastMessageCount() - 1), 2);
            EXPECT_EQ(readFile(victim), "the user's own");
            EXPECT_EQ(readFile(path), db.bytes());
            EXPECT_FALSE(fs::exists(path + ".nowhere"));
        }
    }
}

TEST(HostileHost, texturesThatAreNamedPipesOrDevicesAreNeverRead)
{
    // Reading an image from a pipe nobody writes, or from an idle terminal, would wait for
    // ever inside the scene graph library: the classic names stay, their images unread.
    ScratchDir dir;
    const std::string pipe = dir.file("pipe.rgb");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    FltFixture db;
    db.header().texturePattern(0, pipe).texturePattern(1, "/dev/stdin").push().pop();
    const std::string path = dir.file("db.flt");
    db.save(path);
    for (unsigned int builder : {QETZFLT_BUILD_CLASSIC, QETZFLT_BUILD_AS_AUTHORED}) {
        SoSeparator* root = qetzfltConvert(path.c_str(), builder | QETZFLT_LOG_NONE | QETZFLT_NO_ECHO);
        ASSERT_NE(root, nullptr);
        root->unref();
        ASSERT_EQ(qetzfltLastMessageCount(), builder == QETZFLT_BUILD_CLASSIC ? 2 : 0) << builder;
        if (builder == QETZFLT_BUILD_CLASSIC) {
            EXPECT_NE(std::string(qetzfltLastMessageText(0)).find(pipe + ", a named pipe or a device"), std::string::npos);
        }
    }
}
