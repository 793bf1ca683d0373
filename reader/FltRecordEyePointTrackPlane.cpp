// The eyepoint and trackplane palette record.
#include "reader/FltRecordEyePointTrackPlane.h"

#include "reader/FltBytes.h"
#include "reader/FltDump.h"

namespace {

constexpr size_t kFirstEyePoint = 8;
constexpr size_t kEyePointSize = 272;
constexpr size_t kFirstTrackPlane = kFirstEyePoint + FltRecordEyePointTrackPlane::kMaxEyePoints * kEyePointSize;
constexpr size_t kTrackPlaneSize = 128;

// How many whole entries of the given size the record holds from first on, at most max.
int wholeEntries(const FltBytes& in, size_t first, size_t size, int max)
{
    if (in.size() <= first) return 0;
    const size_t held = (in.size() - first) / size;
    return held < static_cast<size_t>(max) ? static_cast<int>(held) : max;
}

}  // namespace

void FltEyePointStruct::decode(const FltBytes& in, size_t at)
{
    centerX = in.f64(at);
    centerY = in.f64(at + 8);
    centerZ = in.f64(at + 16);
    yawAngle = in.f32(at + 24);
    pitchAngle = in.f32(at + 28);
    rollAngle = in.f32(at + 32);
    in.f32s(at + 36, rotationMatrix, 16);
    viewField = in.f32(at + 100);
    scale = in.f32(at + 104);
    nearClippingPlane = in.f32(at + 108);
    farClippingPlane = in.f32(at + 112);
    in.f32s(at + 116, flyThroughMatrix, 16);
    eyePointX = in.f32(at + 180);
    eyePointY = in.f32(at + 184);
    eyePointZ = in.f32(at + 188);
    flyThroughYaw = in.f32(at + 192);
    pitchThroughYaw = in.f32(at + 196);
    eyeVectorI = in.f32(at + 200);
    eyeVectorJ = in.f32(at + 204);
    eyeVectorK = in.f32(at + 208);
    flyThroughFlag = in.i32(at + 212);
    orthoDrawingFlag = in.i32(at + 216);
    isValidEyePointFlag = in.i32(at + 220);
    imageOffsetX = in.i32(at + 224);
    imageOffsetY = in.i32(at + 228);
    imageZoom = in.i32(at + 232);
    // at + 236 to at + 271: reserved.
}

void FltTrackPlaneStruct::decode(const FltBytes& in, size_t at)
{
    activeFlag = in.i32(at);
    reserved1 = in.i32(at + 4);
    originX = in.f64(at + 8);
    originY = in.f64(at + 16);
    originZ = in.f64(at + 24);
    alignmentX = in.f64(at + 32);
    alignmentY = in.f64(at + 40);
    alignmentZ = in.f64(at + 48);
    planeX = in.f64(at + 56);
    planeY = in.f64(at + 64);
    planeZ = in.f64(at + 72);
    gridFlag = in.u8(at + 80);
    gridType = in.u8(at + 81);
    gridUnder = in.u8(at + 82);
    reserved2 = in.u8(at + 83);
    gridAngle = in.f32(at + 84);
    gridSpacingX = in.f64(at + 88);
    gridSpacingY = in.f64(at + 96);
    radialDirectionControl = in.u8(at + 104);
    rectangularDirectionControl = in.u8(at + 105);
    gridSnap = in.u8(at + 106);
    gridFlagReserved = in.u8(at + 107);
    reserved3 = in.i32(at + 108);
    gridSize = in.f64(at + 112);
    gridVisibilityMask = in.i32(at + 120);
    reserved4 = in.i32(at + 124);
}

void FltRecordEyePointTrackPlane::decode(const FltBytes& in)
{
    reserved = in.i32(4);
    numberOfEyePoints = wholeEntries(in, kFirstEyePoint, kEyePointSize, kMaxEyePoints);
    eyePoints.assign(numberOfEyePoints, FltEyePointStruct());
    for (int i = 0; i < numberOfEyePoints; ++i) eyePoints[i].decode(in, kFirstEyePoint + i * kEyePointSize);
    numberOfTrackPlanes = wholeEntries(in, kFirstTrackPlane, kTrackPlaneSize, kMaxTrackPlanes);
    trackPlanes.assign(numberOfTrackPlanes, FltTrackPlaneStruct());
    for (int i = 0; i < numberOfTrackPlanes; ++i)
        trackPlanes[i].decode(in, kFirstTrackPlane + i * kTrackPlaneSize);
}

void FltRecordEyePointTrackPlane::dumpFields(FltDump& out) const
{
    for (int i = 0; i < numberOfEyePoints; ++i) {
        const FltEyePointStruct& e = eyePoints[i];
        out.text("eyePoint[").num(i).text("]: *****").nl();
        out.f64("centerX: ", e.centerX)
            .f64("centerY: ", e.centerY)
            .f64("centerZ: ", e.centerZ)
            .f64("yawAngle: ", e.yawAngle)
            .f64("pitchAngle: ", e.pitchAngle)
            .f64("rollAngle: ", e.rollAngle);
        out.reals("rotationMatrix: ", e.rotationMatrix, 16);
        out.f64("viewField: ", e.viewField)
            .f64("scale: ", e.scale)
            .f64("nearClippingPlane: ", e.nearClippingPlane)
            .f64("farClippingPlane: ", e.farClippingPlane);
        out.reals("flyThroughMatrix: ", e.flyThroughMatrix, 16);
        out.f64("eyePointX: ", e.eyePointX)
            .f64("eyePointY: ", e.eyePointY)
            .f64("eyePointZ: ", e.eyePointZ)
            .f64("flyThroughYaw: ", e.flyThroughYaw)
            .f64("pitchThroughYaw: ", e.pitchThroughYaw)
            .f64("eyeVectorI: ", e.eyeVectorI)
            .f64("eyeVectorJ: ", e.eyeVectorJ)
            .f64("eyeVectorK: ", e.eyeVectorK)
            .i32("flyThroughFlag: ", e.flyThroughFlag)
            .i32("orthoDrawingFlag: ", e.orthoDrawingFlag)
            .i32("isValidEyePointFlag: ", e.isValidEyePointFlag)
            .i32("imageOffsetX: ", e.imageOffsetX)
            .i32("imageOffsetY: ", e.imageOffsetY)
            .i32("imageZoom: ", e.imageZoom);
    }
    for (int i = 0; i < numberOfTrackPlanes; ++i) {
        const FltTrackPlaneStruct& t = trackPlanes[i];
        out.text("trackplane[").num(i).text("]: *****").nl();
        // Only -1 marks a valid trackplane; any other value gets the one line below.
        if (t.activeFlag != -1) {
            out.text("activeFlag != -1 (it is not a valid trackplane)").nl();
            continue;
        }
        out.i32("activeFlag: ", t.activeFlag)
            .f64("originX: ", t.originX)
            .f64("originY: ", t.originY)
            .f64("originZ: ", t.originZ)
            .f64("alignmentX: ", t.alignmentX)
            .f64("alignmentY: ", t.alignmentY)
            .f64("alignmentZ: ", t.alignmentZ)
            .f64("planeX: ", t.planeX)
            .f64("planeY: ", t.planeY)
            .f64("planeZ: ", t.planeZ)
            .u16("gridFlag: ", t.gridFlag)
            .u16("gridType: ", t.gridType)
            .u16("gridUnder: ", t.gridUnder)
            .f64("gridAngle: ", t.gridAngle)
            .f64("gridSpacingX: ", t.gridSpacingX)
            .f64("gridSpacingY: ", t.gridSpacingY)
            .u16("radialDirectionControl: ", t.radialDirectionControl)
            .u16("rectangularDirectionControl: ", t.rectangularDirectionControl)
            .u16("gridSnap: ", t.gridSnap)
            .u16("gridFlagReserved: ", t.gridFlagReserved)
            .f64("gridSize: ", t.gridSize)
            .i32("gridVisibilityMask: ", t.gridVisibilityMask);
    }
}
