// The conversion run from a file to a root separator: entry points, refusals, the log file,
// reference counts and standard output.
#include <gtest/gtest.h>

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoSeparator.h>

#include <filesystem>

#include "FltFixture.h"
#include "TestSupport.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"

namespace {

class ConversionRun : public ::testing::Test {
protected:
    void SetUp() override
    {
        SoDB::init();
        FltWarningMessageConsole::clearMessages();
    }

    // Converts a file quietly and returns its root, owned by the test.
    SoSeparator* convert(const std::string& path)
    {
        CaptureStream out(std::cout), err(std::cerr);
        SoSeparator* root = convertFrom(path.c_str());
        errors = err.text();
        return root;
    }

    static std::vector<std::string> messages()
    {
        std::vector<std::string> result;
        for (const auto& m : FltWarningMessageConsole::getMessages()) result.push_back(m.message);
        return result;
    }

    ScratchDir dir;
    std::string errors;
};

// Releases a returned root whatever its count.
void release(SoSeparator* root)
{
    if (!root) return;
    root->ref();
    root->unref();
}

}  // namespace

TEST_F(ConversionRun, productNameAndVersionAreFixedStrings)
{
    EXPECT_STREQ(getProductName(), "Skerrymoor");
    EXPECT_STREQ(getVersion(), "8.6.3");
    EXPECT_EQ(getProductName(), getProductName());
    EXPECT_EQ(getVersion(), getVersion());
}

TEST_F(ConversionRun, emptyPathReturnsNullAndWritesNoLog)
{
    const bool existed = std::filesystem::exists(".log");
    EXPECT_EQ(convertFrom(""), nullptr);
    EXPECT_EQ(convertFrom(nullptr), nullptr);
    EXPECT_EQ(std::filesystem::exists(".log"), existed);
}

TEST_F(ConversionRun, successfulConversionReturnsTheNamedRootWithOneReference)
{
    FltFixture db;
    db.header(1570).push().pop();
    db.save(dir.file("ok.flt"));
    SoSeparator* root = convert(dir.file("ok.flt"));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getRefCount(), 1);
    EXPECT_EQ(root->getName(), SbName("root"));
    EXPECT_GT(root->getNumChildren(), 0);
    EXPECT_TRUE(messages().empty());
    root->unref();
}

TEST_F(ConversionRun, missingFileGivesAnEmptyRootAndStillCreatesTheLog)
{
    const std::string path = dir.file("missing.flt");
    SoSeparator* root = convert(path);
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getRefCount(), 0);
    EXPECT_EQ(root->getNumChildren(), 0);
    EXPECT_EQ(errors, "Error in opening file: " + path + "\nERROR ! FltParser has no INPUT !\n(Warning Level: 3)\n\n");
    EXPECT_TRUE(std::filesystem::exists(path + ".log"));
    release(root);
}

TEST_F(ConversionRun, fileThatIsNotOpenFlightIsRefusedByTheEntryTest)
{
    writeFile(dir.file("text.flt"), "this is not a database");
    SoSeparator* root = convert(dir.file("text.flt"));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getNumChildren(), 0);
    EXPECT_EQ(messages(), std::vector<std::string>{"ERROR! Not an Openflight Input !"});
    release(root);
}

TEST_F(ConversionRun, emptyFileIsRefusedByTheEntryTest)
{
    writeFile(dir.file("empty.flt"), "");
    SoSeparator* root = convert(dir.file("empty.flt"));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->getNumChildren(), 0);
    EXPECT_EQ(messages(), std::vector<std::string>{"ERROR! Not an Openflight Input !"});
    release(root);
}

TEST_F(ConversionRun, revisionTenIsRefusedAndElevenConverted)
{
    FltFixture old;
    old.header(10).push().pop();
    old.save(dir.file("r10.flt"));
    SoSeparator* refused = convert(dir.file("r10.flt"));
    EXPECT_EQ(refused->getNumChildren(), 0);
    EXPECT_EQ(refused->getRefCount(), 0);
    EXPECT_EQ(messages(), std::vector<std::string>{"ERROR ! Openflight Format Revision not supported !"});
    release(refused);

    FltWarningMessageConsole::clearMessages();
    FltFixture eleven;
    eleven.header(11).push().pop();
    eleven.save(dir.file("r11.flt"));
    SoSeparator* converted = convert(dir.file("r11.flt"));
    EXPECT_EQ(converted->getRefCount(), 1);
    EXPECT_EQ(converted->getName(), SbName("root"));
    EXPECT_TRUE(messages().empty());
    converted->unref();
}

TEST_F(ConversionRun, logFileHoldsTheProgressAndADumpOfEveryRecord)
{
    FltFixture db;
    db.header(1570, 0, 0x40000000).push().group("g1").pop();
    const std::string path = dir.file("logged.flt");
    db.save(path);
    std::string printed;
    {
        CaptureStream out(std::cout), err(std::cerr);
        SoSeparator* root = convertFrom(path.c_str());
        printed = out.text();
        root->unref();
    }
    EXPECT_EQ(printed, "\nSuccess in opening file: " + path + "\n");
    const std::string log = readFile(path + ".log");
    EXPECT_EQ(log.rfind("beginning of parsing\n\n HEADER RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 1  Length: 324 --\n", 0),
              0u);
    EXPECT_NE(log.find("OpenFlight file version: 1570\nRGB mode: true\n"), std::string::npos);
    EXPECT_NE(log.find("\n GROUP RECORD \n  (PRIMARY_RECORD)\n-- Opcode: 2  Length: 44 --\n"), std::string::npos);
    EXPECT_NE(log.find("\n POP LEVEL RECORD \n"), std::string::npos);
    EXPECT_EQ(log.substr(log.size() - 15), "end of parsing\n");
}

TEST_F(ConversionRun, logFileIsTruncatedByTheNextConversion)
{
    FltFixture db;
    db.header().push().pop();
    const std::string path = dir.file("twice.flt");
    db.save(path);
    convert(path)->unref();
    const std::string first = readFile(path + ".log");
    convert(path)->unref();
    EXPECT_EQ(readFile(path + ".log"), first);
}

TEST_F(ConversionRun, standardOutputIsRestoredAfterAConversion)
{
    FltFixture db;
    db.header().push().pop();
    const std::string path = dir.file("restore.flt");
    db.save(path);
    CaptureStream out(std::cout), err(std::cerr);
    SoSeparator* root = convertFrom(path.c_str());
    std::cout << "after the conversion\n";
    EXPECT_NE(out.text().find("after the conversion\n"), std::string::npos);
    EXPECT_EQ(readFile(path + ".log").find("after the conversion"), std::string::npos);
    root->unref();
}

TEST_F(ConversionRun, unwritableLogStillConverts)
{
    FltFixture db;
    db.header().push().pop();
    std::filesystem::create_directory(dir.file("db.flt"));
    // The log name db.flt.log is taken by a directory, so the log cannot be opened.
    std::filesystem::create_directory(dir.file("x.flt.log"));
    db.save(dir.file("x.flt"));
    SoSeparator* root = convert(dir.file("x.flt"));
    EXPECT_EQ(root->getName(), SbName("root"));
    root->unref();
    CaptureStream out(std::cout);
    std::cout << "still here";
    EXPECT_EQ(out.text(), "still here");
}

TEST_F(ConversionRun, messagesOfSuccessiveConversionsAccumulate)
{
    writeFile(dir.file("bad1.flt"), "xx");
    writeFile(dir.file("bad2.flt"), "yy");
    release(convert(dir.file("bad1.flt")));
    release(convert(dir.file("bad2.flt")));
    EXPECT_EQ(messages().size(), 2u);
}

TEST_F(ConversionRun, damagedFileKeepsTheRecordsBeforeTheDamage)
{
    FltFixture db;
    db.header().push();
    db.raw(std::string("\x00\x02\x00\x00", 4));  // a group record of length 0
    db.save(dir.file("damaged.flt"));
    SoSeparator* root = convert(dir.file("damaged.flt"));
    EXPECT_EQ(root->getName(), SbName("root"));
    EXPECT_EQ(root->getRefCount(), 1);
    ASSERT_EQ(messages().size(), 1u);
    EXPECT_NE(messages()[0].find("opcode 2 at byte offset 328 has length 0"), std::string::npos);
    root->unref();
}
