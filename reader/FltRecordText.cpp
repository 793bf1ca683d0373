// The text record.
#include "reader/FltRecordText.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

void FltRecordText::decode(const FltBytes& in)
{
    in.chars(4, 8, idASCII);
    reserved1 = in.i32(12);
    type = in.i32(16);
    drawType = in.i32(20);
    justification = in.i32(24);
    floatingPointValue = in.f64(28);
    integerValue = in.i32(36);
    // Offsets 40 to 59 are reserved.
    flags = in.i32(60);
    color = in.i32(64);
    color2 = in.i32(68);
    material = in.i32(72);
    reserved2 = in.i32(76);
    maxNumberOfLines = in.i32(80);
    maxNumberOfCharacters = in.i32(84);
    currentLengthOfText = in.i32(88);
    nextLineNumberAvailable = in.i32(92);
    lineNumberAtTopOfDisplay = in.i32(96);
    lowIntegerValue = in.i32(100);
    highIntegerValue = in.i32(104);
    lowFloatingPointValue = in.f64(108);
    highFloatingPointValue = in.f64(116);
    XlowerLeftCorner = in.f64(124);
    YlowerLeftCorner = in.f64(132);
    ZlowerLeftCorner = in.f64(140);
    XupperRightCorner = in.f64(148);
    YupperRightCorner = in.f64(156);
    ZupperRightCorner = in.f64(164);
    in.chars(172, 120, fontName);
    fontName[120] = '\0';
    drawVertical = in.i32(292);
    drawItalic = in.i32(296);
    drawBold = in.i32(300);
    drawUnderline = in.i32(304);
    lineStyle = in.i32(308);
    reserved3 = in.i32(312);
}

void FltRecordText::dumpFields(FltDump& out) const
{
    out.str("idASCII: ", idASCII, 8)
        .i32("type: ", type)
        .i32("drawType: ", drawType)
        .i32("justification: ", justification)
        .f64("floatingPointValue: ", floatingPointValue)
        .i32("integerValue: ", integerValue)
        .i32("flags: ", flags)
        .i32("color: ", color)
        .i32("color2: ", color2)
        .i32("material: ", material)
        .i32("maxNumberOfLines: ", maxNumberOfLines)
        .i32("maxNumberOfCharacters: ", maxNumberOfCharacters)
        .i32("currentLengthOfText: ", currentLengthOfText)
        .i32("nextLineNumberAvailable: ", nextLineNumberAvailable)
        .i32("lineNumberAtTopOfDisplay: ", lineNumberAtTopOfDisplay)
        .i32("lowIntegerValue: ", lowIntegerValue)
        .i32("highIntegerValue: ", highIntegerValue)
        .f64("lowFloatingPointValue: ", lowFloatingPointValue)
        .f64("highFloatingPointValue: ", highFloatingPointValue)
        .f64("XlowerLeftCorner: ", XlowerLeftCorner)
        .f64("YlowerLeftCorner: ", YlowerLeftCorner)
        .f64("ZlowerLeftCorner: ", ZlowerLeftCorner)
        .f64("XupperRightCorner: ", XupperRightCorner)
        .f64("YupperRightCorner: ", YupperRightCorner)
        .f64("ZupperRightCorner: ", ZupperRightCorner)
        .str("fontName: ", fontName, 120)
        .i32("drawVertical: ", drawVertical)
        .i32("drawItalic: ", drawItalic)
        .i32("drawBold: ", drawBold)
        .i32("drawUnderline: ", drawUnderline)
        .i32("lineStyle: ", lineStyle);
}
