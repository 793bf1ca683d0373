// Reading a database file: names, directories, pipes, empty and missing files.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "TestSupport.h"
#include "reader/FltFileInput.h"

TEST(FltFileInput, readsTheFileEvenEmptyOrNamedWithBackslashesAndKeepsItsDirectoryPrefix)
{
    ScratchDir dir;
    writeFile(dir.file("a.flt"), std::string("\x00\x01\xFF", 3));
    CaptureStream out(std::cout);
    FltFileInput input(dir.file("a.flt").c_str());
    EXPECT_EQ(std::string(input.getBuffer(), input.getSize()), std::string("\x00\x01\xFF", 3));
    EXPECT_EQ(std::string(input.getFileName()), dir.file("a.flt"));
    EXPECT_EQ(std::string(input.getDirName()), dir.path().string() + "/");
    EXPECT_EQ(input.getAdditionalDirName(), input.getDirName());
    input.showBuffer();  // every byte as an unsigned number
    EXPECT_EQ(out.text(), "\nSuccess in opening file: " + dir.file("a.flt") + "\n0 1 255 ");

    writeFile(dir.file("empty.flt"), "");
    FltFileInput empty(dir.file("empty.flt").c_str());
    EXPECT_TRUE(empty.isInFlowCreated());
    EXPECT_EQ(empty.getSize(), 0u);
    FltFileInput windowsStyle((dir.path().string() + "\\a.flt").c_str());  // opens the file it names
    EXPECT_EQ(windowsStyle.getSize(), 3u);
}

TEST(FltFileInput, missingFilesDirectoriesAndNamedPipesAreRefusedAndNamedWithSlashes)
{
    ScratchDir dir;
    // A pipe without a writer: opening it for reading must not wait for one.
    ASSERT_EQ(mkfifo(dir.file("pipe.flt").c_str(), 0600), 0);
    const std::string folder = dir.path().string(), inFolder = folder + "/", pipe = dir.file("pipe.flt");
    const std::string parent = dir.path().parent_path().string() + "/";
    struct Case {
        const char* path;
        const char* fileName;
        const char* dirName;  // null: no directory
    };
    for (const Case& c : {Case{"no-such-file-here.flt", "no-such-file-here.flt", nullptr},
                          Case{"/no-such-root-file.flt", "/no-such-root-file.flt", "/"},
                          Case{"C:\\data\\a.flt", "C:/data/a.flt", "C:/data/"},
                          Case{folder.c_str(), folder.c_str(), parent.c_str()},
                          Case{pipe.c_str(), pipe.c_str(), inFolder.c_str()}}) {
        CaptureStream err(std::cerr);
        FltFileInput input(c.path);
        EXPECT_FALSE(input.isInFlowCreated()) << c.path;
        EXPECT_EQ(input.getBuffer(), nullptr) << c.path;
        EXPECT_STREQ(input.getFileName(), c.fileName);
        EXPECT_STREQ(input.getDirName(), c.dirName);
        EXPECT_EQ(err.text(), std::string("Error in opening file: ") + c.fileName + "\n");
    }
}
