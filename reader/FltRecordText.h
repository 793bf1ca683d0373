// The text record.
#pragma once

#include <cstdint>

#include "reader/FltRecord.h"

// Text record, opcode 95, 316 bytes: a named text field with its kind, value range,
// placement box and font. Only idASCII reaches the scene graph (as the name of an empty
// separator); the other fields are decoded for the dump.
class FltRecordText : public PrimaryFltRecord {
public:
    explicit FltRecordText(unsigned int length) : PrimaryFltRecord(length) {}
    int getOpcode() const override { return 95; }
    const char* getHeading() const override { return "\n TEXT RECORD "; }
    void decode(const FltBytes& in) override;
    void dumpFields(FltDump& out) const override;

    char idASCII[9] = {};
    int32_t reserved1 = 0;
    int32_t type = 0;           // -1 static, 0 text, 1 float, 2 integer
    int32_t drawType = 0;       // 0 solid, 1 wireframe and close, 2 wireframe, 3 surround
    int32_t justification = 0;  // -1 left, 0 centre, 1 right
    double floatingPointValue = 0;
    int32_t integerValue = 0;
    int32_t flags = 0;
    int32_t color = 0;
    int32_t color2 = 0;
    int32_t material = 0;
    int32_t reserved2 = 0;
    int32_t maxNumberOfLines = 0;
    int32_t maxNumberOfCharacters = 0;
    int32_t currentLengthOfText = 0;
    int32_t nextLineNumberAvailable = 0;
    int32_t lineNumberAtTopOfDisplay = 0;
    int32_t lowIntegerValue = 0;
    int32_t highIntegerValue = 0;
    double lowFloatingPointValue = 0;
    double highFloatingPointValue = 0;
    double XlowerLeftCorner = 0;
    double YlowerLeftCorner = 0;
    double ZlowerLeftCorner = 0;
    double XupperRightCorner = 0;
    double YupperRightCorner = 0;
    double ZupperRightCorner = 0;
    char fontName[121] = {};
    int32_t drawVertical = 0;
    int32_t drawItalic = 0;
    int32_t drawBold = 0;
    int32_t drawUnderline = 0;
    int32_t lineStyle = 0;
    int32_t reserved3 = 0;
};
