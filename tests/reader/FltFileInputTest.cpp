// Reading a database file: names, directories, empty and missing files.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "reader/FltFileInput.h"

TEST(FltFileInput, keepsTheNameAndItsDirectoryPrefix)
{
    ScratchDir dir;
    writeFile(dir.file("a.flt"), "xyz");
    FltFileInput input(dir.file("a.flt").c_str());
    EXPECT_TRUE(input.isInFlowCreated());
    EXPECT_EQ(input.getSize(), 3u);
    EXPECT_EQ(std::string(input.getBuffer(), 3), "xyz");
    EXPECT_EQ(std::string(input.getFileName()), dir.file("a.flt"));
    EXPECT_EQ(std::string(input.getDirName()), dir.path().string() + "/");
    EXPECT_EQ(input.getAdditionalDirName(), input.getDirName());
}

TEST(FltFileInput, nameWithoutSlashHasNoDirectory)
{
    CaptureStream err(std::cerr);
    FltFileInput input("no-such-file-here.flt");
    EXPECT_EQ(input.getDirName(), nullptr);
    EXPECT_FALSE(input.isInFlowCreated());
    EXPECT_EQ(input.getBuffer(), nullptr);
    EXPECT_EQ(err.text(), "Error in opening file: no-such-file-here.flt\n");
}

TEST(FltFileInput, rootFileHasTheRootDirectory)
{
    CaptureStream err(std::cerr);
    FltFileInput input("/no-such-root-file.flt");
    EXPECT_STREQ(input.getDirName(), "/");
}

TEST(FltFileInput, backslashesBecomeSlashes)
{
    CaptureStream err(std::cerr);
    FltFileInput input("C:\\data\\a.flt");
    EXPECT_STREQ(input.getFileName(), "C:/data/a.flt");
    EXPECT_STREQ(input.getDirName(), "C:/data/");
    EXPECT_EQ(err.text(), "Error in opening file: C:/data/a.flt\n");
}

TEST(FltFileInput, backslashPathsOpenTheFileTheyName)
{
    ScratchDir dir;
    writeFile(dir.file("b.flt"), "1234");
    std::string windowsStyle = dir.path().string() + "\\b.flt";
    FltFileInput input(windowsStyle.c_str());
    EXPECT_TRUE(input.isInFlowCreated());
    EXPECT_EQ(input.getSize(), 4u);
}

TEST(FltFileInput, emptyFileIsReadWithSizeZero)
{
    ScratchDir dir;
    writeFile(dir.file("empty.flt"), "");
    CaptureStream out(std::cout);
    FltFileInput input(dir.file("empty.flt").c_str());
    EXPECT_TRUE(input.isInFlowCreated());
    EXPECT_EQ(input.getSize(), 0u);
    EXPECT_EQ(out.text(), "\nSuccess in opening file: " + dir.file("empty.flt") + "\n");
}

TEST(FltFileInput, directoryIsRefusedLikeAMissingFile)
{
    ScratchDir dir;
    CaptureStream err(std::cerr);
    FltFileInput input(dir.path().string().c_str());
    EXPECT_FALSE(input.isInFlowCreated());
    EXPECT_EQ(input.getBuffer(), nullptr);
    EXPECT_NE(err.text().find("Error in opening file: "), std::string::npos);
}

TEST(FltFileInput, showBufferPrintsEveryByteAsAnUnsignedNumber)
{
    ScratchDir dir;
    writeFile(dir.file("bytes"), std::string("\x00\x01\xFF", 3));
    FltFileInput input(dir.file("bytes").c_str());
    CaptureStream out(std::cout);
    input.showBuffer();
    EXPECT_EQ(out.text(), "0 1 255 ");
}
