// The conversion run from a file to a root separator: entry points, refusals, the log file,
// reference counts and standard output.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "ConvertSupport.h"

TEST(ConversionRun, refusedFilesGiveAnEmptyRootWithoutReferenceAndStillCreateTheLog)
{
    FltFixture old;
    const struct {
        std::string bytes;  // "absent": no file at all
        std::string message;
    } cases[] = {
        {"absent", "ERROR ! FltParser has no INPUT !"},
        {"this is not a database", "ERROR! Not an Openflight Input !"},
        {old.header(10).push().pop().bytes(), "ERROR ! Openflight Format Revision not supported !"},
    };
    for (const auto& k : cases) {
        ScratchDir dir;
        const std::string path = dir.file("db.flt");
        if (k.bytes != "absent") writeFile(path, k.bytes);
        Converted c(Converted::File{path});
        ASSERT_NE(c.root, nullptr);
        EXPECT_EQ(c.root->getRefCount(), 0) << k.message;
        EXPECT_EQ(c.root->getNumChildren(), 0);
        EXPECT_EQ(c.messages, Names{k.message});  // appended to those of the conversions before
        EXPECT_TRUE(std::filesystem::exists(path + ".log"));
        const std::string opening = k.bytes == "absent" ? "Error in opening file: " + path + "\n" : "";
        EXPECT_EQ(c.errors, opening + k.message + "\n(Warning Level: 3)\n\n");
    }
}

TEST(ConversionRun, standardOutputIsRestoredAfterAConversionWhetherOrNotTheLogOpens)
{
    FltFixture db;
    db.header().push().pop();
    ScratchDir dir;
    db.save(dir.file("x.flt"));
    db.save(dir.file("y.flt"));
    // The log name y.flt.log is taken by a directory, so that log cannot be opened.
    std::filesystem::create_directory(dir.file("y.flt.log"));
    for (const char* name : {"x.flt", "y.flt"}) {
        CaptureStream out(std::cout), err(std::cerr);
        SoSeparator* root = convertFrom(dir.file(name).c_str());
        ASSERT_NE(root, nullptr);
        EXPECT_EQ(root->getName(), SbName("root"));
        std::cout << "after the conversion\n";
        EXPECT_NE(out.text().find("after the conversion\n"), std::string::npos) << name;
        root->unref();
    }
    EXPECT_EQ(readFile(dir.file("x.flt.log")).find("after the conversion"), std::string::npos);
    // A host that captures standard output while it points at the library's route, and
    // frees its capture once it has pointed it back there, is not written through later.
    CaptureStandardOutputFile file;
    convertFrom(dir.file("x.flt").c_str())->unref();
    {
        CaptureStream inner(std::cout);
        convertFrom(dir.file("x.flt").c_str())->unref();
        std::cout << "in the inner capture\n";
        EXPECT_NE(inner.text().find("in the inner capture\n"), std::string::npos);
    }
    std::cout << "after the inner capture\n";
    const std::string text = file.text();
    EXPECT_NE(text.find("after the inner capture\n"), std::string::npos);
    EXPECT_EQ(text.find("in the inner capture"), std::string::npos);
}

TEST(ConversionRun, optionsWordChoosesTheLogAndWhatReachesTheStandardStreams)
{
    // A pop with nothing open gives a level-2 message, echoed unless the options say not.
    FltFixture db;
    db.header().push().pop().pop();
    ScratchDir dir;
    const std::string path = dir.file("db.flt");
    db.save(path);
    const std::string popMessage = "WARNING ! trying a pop() but stack is empty! (File corrupted ?)";
    const struct {
        unsigned int options;
        bool log, dump, opening, echo;
    } rows[] = {
        // Each log replaces the one before: a log without dump follows one with it.
        {QETZFLT_LOG_NONE, false, false, true, true},
        {QETZFLT_LOG_FILE, true, true, true, true},
        {QETZFLT_LOG_NO_DUMP, true, false, true, true},
        {QETZFLT_LOG_FILE | QETZFLT_NO_STANDARD_OUTPUT, true, true, false, true},
        {QETZFLT_LOG_NO_DUMP | QETZFLT_NO_STANDARD_OUTPUT | QETZFLT_NO_ECHO, true, false, false, false},
    };
    // The variable is for convertFrom alone: an options word says all.
    setenv("QETZFLT_NO_LOG", "1", 1);
    for (const auto& row : rows) {
        CaptureStream out(std::cout), err(std::cerr);
        SoSeparator* root = qetzfltConvert(path.c_str(), row.options);
        ASSERT_NE(root, nullptr);
        root->unref();
        const std::string log = readFile(path + ".log");
        EXPECT_EQ(log.find("beginning of parsing\n") == 0, row.log) << row.options;
        EXPECT_EQ(log.find("HEADER RECORD") != std::string::npos, row.dump) << row.options;
        EXPECT_EQ(out.text(), row.opening ? "\nSuccess in opening file: " + path + "\n" : "") << row.options;
        EXPECT_EQ(err.text(), row.echo ? popMessage + "\n(Warning Level: 2)\n\n" : "") << row.options;
        ASSERT_EQ(qetzfltLastMessageCount(), 1) << row.options;
        EXPECT_EQ(qetzfltLastMessageText(0), popMessage);
        EXPECT_EQ(qetzfltLastMessageLevel(0), 2);
        EXPECT_EQ(qetzfltLastMessageText(1), nullptr);
    }
    {
        CaptureStream out(std::cout), err(std::cerr);
        SoSeparator* root = convertFrom(path.c_str());
        root->unref();
    }
    unsetenv("QETZFLT_NO_LOG");
    EXPECT_EQ(readFile(path + ".log").find("HEADER RECORD"), std::string::npos);
    // Bits this library does not know convert nothing; the conversion before keeps its messages.
    for (unsigned int unknown : {0x3u, 0x20u, 0x400u}) {
        CaptureStream err(std::cerr);
        EXPECT_EQ(qetzfltConvert(path.c_str(), unknown), nullptr);
        EXPECT_NE(err.text().find("ERROR ! Unknown conversion options"), std::string::npos);
    }
    // An empty path converts nothing and writes no log.
    const bool existed = std::filesystem::exists(".log");
    EXPECT_EQ(qetzfltConvert("", QETZFLT_LOG_NONE), nullptr);
    EXPECT_EQ(convertFrom(""), nullptr);
    EXPECT_EQ(convertFrom(nullptr), nullptr);
    EXPECT_EQ(std::filesystem::exists(".log"), existed);
    EXPECT_EQ(qetzfltLastMessageCount(), 1);
    // A host empties the process's list; the last conversion's messages stay.
    EXPECT_GE(qetzfltMessageCount(), 8);
    qetzfltClearMessages();
    EXPECT_EQ(qetzfltMessageCount(), 0);
    EXPECT_EQ(qetzfltMessageText(0), nullptr);
    EXPECT_EQ(qetzfltLastMessageCount(), 1);
}

TEST(ConversionRun, aFileIsADatabaseWhenItBeginsWithAHeaderRecord)
{
    ScratchDir dir;
    const struct {
        std::string bytes;  // "absent": no file; "pipe": a named pipe nobody writes
        int database;
    } rows[] = {{std::string("\x00\x01\x01\x44", 4), 1}, {std::string("\x00\x01\x00\x00", 4), 0},
                {std::string("\x00\x02\x01\x44", 4), 0}, {std::string("\x00\x01", 2), 0},
                {"absent", 0},                           {"pipe", 0}};
    int n = 0;
    for (const auto& row : rows) {
        const std::string path = dir.file(std::to_string(n++));
        if (row.bytes == "pipe")
            ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        else if (row.bytes != "absent")
            writeFile(path, row.bytes);
        EXPECT_EQ(qetzfltIsDatabase(path.c_str()), row.database) << n;
    }
}

TEST(ConversionRun, progressHookHearsRisingFractionsEndingAtOneWithoutChangingTheScene)
{
    FltFixture db;
    db.header().vertexPalette();
    const int a = db.vertexColor(0, 0, 0), b = db.vertexColor(1, 0, 0), c = db.vertexColor(1, 1, 0);
    db.push().group("g").push().object("o").push();
    for (int i = 0; i < 300; ++i) db.face().push().vertexList({a, b, c}).pop();
    db.pop().pop().pop();
    const std::string plain = sceneText(Converted(db).root);

    std::vector<double> heard;
    auto hear = [](void* user, double fraction) { static_cast<std::vector<double>*>(user)->push_back(fraction); };
    auto hearAndThrow = [](void* user, double fraction) {
        static_cast<std::vector<double>*>(user)->push_back(fraction);
        throw std::runtime_error("the host's fault");
    };
    ScratchDir dir;
    const std::string glb = dir.file("db.glb");
    for (const QetzfltProgressFunction hook : {+hear, +hearAndThrow}) {
        for (const bool gltf : {false, true}) {
            heard.clear();
            qetzfltSetProgress(hook, &heard);
            if (gltf) {
                db.save(dir.file("db.flt"));
                EXPECT_EQ(qetzfltWriteGltf(dir.file("db.flt").c_str(), glb.c_str(), QETZFLT_LOG_NONE | QETZFLT_NO_ECHO), 0);
            } else {
                Converted converted(db);
                EXPECT_EQ(sceneText(converted.root), plain);
            }
            qetzfltSetProgress(nullptr, nullptr);
            ASSERT_GE(heard.size(), 10u) << gltf;
            EXPECT_LE(heard.size(), 101u);
            EXPECT_EQ(heard.front(), 0.0);
            // Strictly rising, so 1.0 comes once, last.
            EXPECT_EQ(std::adjacent_find(heard.begin(), heard.end(), std::greater_equal<double>()), heard.end()) << gltf;
            EXPECT_EQ(heard.back(), 1.0);
        }
    }
}
