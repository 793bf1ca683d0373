// The header's root: name, unit scale and the shape hints and bindings in their order.
#include <gtest/gtest.h>

#include <Inventor/nodes/SoScale.h>

#include "ConvertSupport.h"

TEST(HeaderConversion, unitsAndOldMultipliersScaleTheRootToMetresAheadOfTheShapeHintsAndBindings)
{
    // The golden scene pins the values of the hints and bindings.
    struct Case {
        int32_t revision;
        uint8_t units;
        int16_t multiplier;
        float scale;  // -1: no scale node
    };
    const Case cases[] = {
        {1570, 0, 0, -1}, {1570, 1, 0, 1000.0f}, {1570, 4, 0, 0.3048f}, {1570, 5, 0, 0.0254f}, {1570, 8, 0, 1852.0f},
        {1570, 2, 0, -1}, {1570, 3, 0, -1},  // values the table does not list count as metres
        // Before revision 13 a unit multiplier (positive) or divisor (negative) applies; a
        // multiplier of 0 collapses the geometry: the established behaviour.
        {12, 0, -100, 0.01f}, {12, 4, 2, 0.6096f}, {13, 0, -100, -1}, {12, 0, 0, 0.0f},
        {11, 0, 1, -1},  // the oldest revision converted
    };
    for (const Case& k : cases) {
        FltFixture db;
        Converted c(db.header(k.revision, k.units, 0, k.multiplier).push().pop());
        SCOPED_TRACE(testing::Message() << k.revision << " " << int(k.units) << " " << k.multiplier);
        EXPECT_TRUE(c.messages.empty());
        const int s = k.scale != -1 ? 1 : 0;
        EXPECT_EQ(tree(c.root), std::string("Separator:root[") + (s ? "Scale " : "") +
                                    "ShapeHints TextureCoordinateBinding NormalBinding]");
        if (s) {
            const SbVec3f f = childAs<SoScale>(c.root, 0)->scaleFactor.getValue();
            EXPECT_FLOAT_EQ(f[0], k.scale);
            EXPECT_EQ(f, SbVec3f(f[0], f[0], f[0]));
        }
    }
}

TEST(HeaderConversion, secondHeaderAppendsAnotherSetAndAnotherReferenceButNoLaterOne)
{
    // A flood of 4-byte headers: past the short-record limit they are unknown records.
    for (int headers : {2, 3, 300000}) {
        FltFixture db;
        db.header(1570);
        for (int i = 1; i < headers; ++i) headers < 100 ? db.header(1570) : db.add(FltRecordBytes(1, 4));
        Converted c(db.push().pop());
        if (headers < 100) {
            EXPECT_EQ(c.root->getNumChildren(), 3 * headers);
        }
        EXPECT_EQ(c.root->getRefCount(), 2) << headers;  // a host's unref and ours free it
        c.root->unref();  // the second header's reference, so that the test frees the root
    }
}
