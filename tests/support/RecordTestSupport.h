// Decoding one record from fixture bytes through the opcode factory, for record tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <sstream>
#include <string>

#include "tools/FltFixture.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltCreationVisitor.h"
#include "reader/FltRawData.h"
#include "reader/FltRecord.h"

// Hands these bytes to the visitor as one record, from a heap block of exactly the record's
// length so that the sanitizer build catches any read past it, and returns what it made
// (a sound palette continuing the visitor's previous one is that same object).
inline FltRecord* feed(Flt_15_7_CreationVisitor& visitor, const std::string& data)
{
    std::unique_ptr<char[]> exact(new char[data.size()]);
    std::copy(data.begin(), data.end(), exact.get());
    FltRawData raw(static_cast<uint16_t>((uint8_t(data[0]) << 8) | uint8_t(data[1])),
                   static_cast<uint16_t>(data.size()), exact.get());
    FltRecord* record = nullptr;
    visitor.visitFltRawData(record, &raw);
    return record;
}

// Builds the record the factory makes for these bytes, decoded under the given revision
// (the way a parse stamps it), and returns it as T; throws (failing the test) when the
// factory made another class.
template <class T>
std::unique_ptr<T> decodeRecord(const FltRecordBytes& bytes, int revision = 1570)
{
    Flt_15_7_CreationVisitor visitor;
    visitor.setDumpStream(nullptr);
    visitor.formatRevision = revision;
    FltRecord* record = feed(visitor, bytes.bytes());
    T* typed = dynamic_cast<T*>(record);
    if (!typed) {
        delete record;
        throw std::runtime_error("the factory made a record of another class");
    }
    return std::unique_ptr<T>(typed);
}

// The record's full dump, heading block included.
inline std::string dumpOf(const FltRecord& record)
{
    std::ostringstream os;
    record.properties(os);
    return os.str();
}

// The dump without its heading block (the three lines of heading, category and opcode).
inline std::string fieldsOf(const FltRecord& record)
{
    const std::string all = dumpOf(record);
    size_t pos = all.find(" --\n");
    return pos == std::string::npos ? all : all.substr(pos + 4);
}

// Passes when text ends with tail; on failure shows how the text really ends.
inline ::testing::AssertionResult endsWith(const std::string& text, const std::string& tail)
{
    if (text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "ends with \"" << text.substr(text.size() > 200 ? text.size() - 200 : 0)
                                         << "\"";
}

// Decodes a record of a class the factory never creates, from a heap block of exactly its
// bytes.
template <class T>
std::unique_ptr<T> decodeDirectly(const FltRecordBytes& bytes)
{
    auto record = std::make_unique<T>(static_cast<unsigned int>(bytes.size()));
    std::unique_ptr<char[]> exact(new char[bytes.size()]);
    std::copy(bytes.bytes().begin(), bytes.bytes().end(), exact.get());
    record->getPropertiesFromData(exact.get());
    return record;
}

// Tests that read the message console: it is empty at each one's start and end.
class ConsoleMessagesTest : public ::testing::Test {
protected:
    void SetUp() override { FltWarningMessageConsole::clearMessages(); }
    void TearDown() override { FltWarningMessageConsole::clearMessages(); }
    static const std::vector<FltWarningMessage>& messages() { return FltWarningMessageConsole::getMessages(); }
};
