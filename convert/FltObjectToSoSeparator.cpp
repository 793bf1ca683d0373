// The geometry of one object: faces sorted into eight groups, one material entry per face,
// indexed face sets over the shared vertex properties, split by texture pattern.
#include "convert/FltObjectToSoSeparator.h"

#include <Inventor/SbColor.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoPolygonOffset.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoTexture2.h>
#include <Inventor/nodes/SoVertexProperty.h>

#include <ostream>

#include "convert/FltClassicColors.h"
#include "convert/FltNodePool.h"
#include "convert/FltSharedVertexProperties.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltOpcode.h"
#include "reader/FltRecordFace.h"
#include "reader/FltRecordVertex.h"

namespace {

// Node names made once: each SbName made from text is a search of Coin's name table, which
// a database of many named objects fills.
const SbName& materialName(bool subface, int propertyId)
{
    static const SbName face[4] = {"faceVertexColorSoMaterialSet", "faceVertexColorNormalSoMaterialSet",
                                   "faceVertexColorUVSoMaterialSet", "faceVertexColorNormalUVSoMaterialSet"};
    static const SbName sub[4] = {"subFaceVertexColorSoMaterialSet", "subFaceVertexColorNormalSoMaterialSet",
                                  "subFaceVertexColorUVSoMaterialSet", "subFaceVertexColorNormalUVSoMaterialSet"};
    return subface ? sub[propertyId - 1] : face[propertyId - 1];
}

// Entries before one that a face sets, which no face set, hold Inventor's material defaults.
const FltMaterial kDefaultMaterial;

// Sets entry e of a vector, entries before it that nothing set taking fill.
template <class Value>
void setAt(std::vector<Value>& values, int e, const Value& value, const Value& fill)
{
    if (e < 0) return;
    const size_t at = static_cast<size_t>(e);
    if (at == values.size()) {
        values.push_back(value);
        return;
    }
    if (at > values.size()) values.resize(at + 1, fill);
    values[at] = value;
}

// Writes a field's gathered entries, if any; the field keeps its own default otherwise.
template <class Field, class Value>
void writeField(Field& field, const std::vector<Value>& values)
{
    if (values.empty()) return;
    const FltFreshField fresh(field);
    field.setValues(0, static_cast<int>(values.size()), values.data());
}

}  // namespace

void FltFaceMaterialEntries::setColors(int e, const SbColor& a, const SbColor& d, const SbColor& sp, const SbColor& em,
                                       float shine)
{
    setAt(ambient, e, a, SbColor(kDefaultMaterial.ambient));
    setAt(diffuse, e, d, SbColor(kDefaultMaterial.diffuse));
    setAt(specular, e, sp, SbColor(kDefaultMaterial.specular));
    setAt(emissive, e, em, SbColor(kDefaultMaterial.emissive));
    setAt(shininess, e, shine, kDefaultMaterial.shininess);
}

void FltFaceMaterialEntries::setTransparency(int e, float value)
{
    setAt(transparency, e, value, kDefaultMaterial.transparency);
}

void FltFaceMaterialEntries::writeTo(SoMaterial* m) const
{
    writeField(m->ambientColor, ambient);
    writeField(m->diffuseColor, diffuse);
    writeField(m->specularColor, specular);
    writeField(m->emissiveColor, emissive);
    writeField(m->shininess, shininess);
    writeField(m->transparency, transparency);
}

FltObjectToSoSeparator::FltObjectToSoSeparator(const FltObjectContext& context) : context(context)
{
    oldVertex.name = "oldVertexProperty";
    oldVertexColor.name = "oldVertexColorProperty";
    oldVertexColorNormal.name = "oldVertexColorNormalProperty";
}

FltObjectToSoSeparator::~FltObjectToSoSeparator()
{
    for (OldVertexFaces* faces : {&oldVertex, &oldVertexColor, &oldVertexColorNormal})
        if (faces->property) faces->property->unref();
}

SoVertexProperty* FltObjectToSoSeparator::OldVertexFaces::getProperty()
{
    if (!property) {
        property = new SoVertexProperty;
        property->ref();
        property->setName(name);
    }
    return property;
}

FltRecordIterator FltObjectToSoSeparator::subtreeEnd()
{
    if (!subtreeEndFound_) {
        subtreeEnd_ = fltSubtreeEnd(begin_);
        subtreeEndFound_ = true;
    }
    return subtreeEnd_;
}

void FltObjectToSoSeparator::setCurrentIterator(FltRecordIterator begin)
{
    begin_ = begin;
    iteratorSet = true;
    subtreeEndFound_ = false;
}

void FltObjectToSoSeparator::buildFinalSoSeparator()
{
    if (!iteratorSet || !destination) {
        FltWarningMessageConsole::notifyMessage(
            "ERROR! In class FltObjectToSoSeparator: Try to build A SoSeparator from a FLT object\n"
            " but some fields aren't correctly initialized",
            3, true);
        return;
    }
    SoMaterialBinding* binding = context.pool.binding();
    {
        const FltFreshField fresh(binding->value);
        binding->value = SoMaterialBinding::PER_FACE_INDEXED;
    }
    destination->addChild(binding);
    traverseObjectPrimaryRecords();
    built = true;
}

void FltObjectToSoSeparator::traverseObjectPrimaryRecords()
{
    visitAllFaces();
    for (int id = VERTEX_COLOR_PROPERTY_ID; id <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID; ++id) {
        SoVertexProperty* property = context.vertices.property(id);
        if (!faceGroup(id, false).coordIndex.empty()) addFaceGroup(id, false, property);
        if (!faceGroup(id, true).coordIndex.empty()) {
            // The offset is never reset: it holds for every node after it in the separator.
            addPolygonOffset();
            addFaceGroup(id, true, property);
        }
    }
    // Old vertex faces: the colour face set is built only where colour-and-normal faces exist
    // too, and faces of plain old vertices never are. Both kept on purpose.
    if (!oldVertexColorNormal.coordIndex.empty()) buildAndAddIndexedFaceSetFromOldVertexColorNormal();
    if (!oldVertexColorNormal.coordIndex.empty()) buildAndAddIndexedFaceSetFromOldVertexColor();
}

void FltObjectToSoSeparator::addFaceGroup(int propertyId, bool subface, SoVertexProperty* property)
{
    FaceGroup& faces = faceGroup(propertyId, subface);
    SoMaterial* material = context.pool.material();
    material->setName(materialName(subface, propertyId));
    faces.material.writeTo(material);
    destination->addChild(material);
    buildAndAddIndexedFaceSetFromIndicesVector(faces.coordIndex, faces.materialIndex, faces.textures, property);
}

void FltObjectToSoSeparator::addPolygonOffset()
{
    auto* offset = new SoPolygonOffset;
    offset->factor = -1.0f;
    offset->units = -30.0f;
    destination->addChild(offset);
}

void FltObjectToSoSeparator::visitAllFaces()
{
    // The object's subtree: from its first record to the pop level that closes the first push.
    FltRecordIterator end = subtreeEnd();
    fltAdvance(end);
    int subfaceDepth = 0;
    for (FltRecordIterator it = begin_; it != end; ++it) {
        const int opcode = (*it)->getOpcode();
        if (opcode == FltOpcode::PushSubface)
            ++subfaceDepth;
        else if (opcode == FltOpcode::PopSubface)
            --subfaceDepth;
        else if (opcode == FltOpcode::Face)
            visitFace(fltRecordCast<FltRecordFace>(*it), it, end, subfaceDepth);
    }
}

void FltObjectToSoSeparator::visitFace(const FltRecordFace* face, FltRecordIterator position, FltRecordIterator end,
                                       int subfaceDepth)
{
    if (!face) return;
    std::vector<int32_t>& indices = faceIndices;
    indices.clear();
    int propertyId = UNDEFINED_SO_VERTEX_PROPERTY_ID;
    visitAllVertexList(position, end, indices, propertyId);
    if (!indices.empty() && propertyId >= VERTEX_COLOR_PROPERTY_ID && propertyId <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID)
        addFaceToVector(face, indices, faceGroup(propertyId, subfaceDepth != 0));
    for (OldVertexFaces* faces : {&oldVertex, &oldVertexColor, &oldVertexColorNormal}) faces->closeFace();
}

void FltObjectToSoSeparator::visitAllVertexList(FltRecordIterator position, FltRecordIterator end,
                                                std::vector<int32_t>& indices, int& propertyId)
{
    // The records after the face, up to the next face.
    for (auto it = position + 1; it != end; ++it) {
        FltRecord* record = *it;
        switch (record->getOpcode()) {
        case FltOpcode::Face: return;
        case FltOpcode::VertexList:
            visitVertexList(fltRecordCast<FltRecordVertexList>(record), indices, propertyId);
            break;
        case FltOpcode::MorphVertexList:
            visitMorphVertexList(fltRecordCast<FltRecordMorphVertexList>(record), indices, propertyId);
            break;
        case FltOpcode::OldVertex: addOldVertexToSoVertexProperty(fltRecordCast<FltRecordOldVertex>(record)); break;
        case FltOpcode::OldVertexColor:
            addOldVertexColorToSoVertexProperty(fltRecordCast<FltRecordOldVertexColor>(record));
            break;
        case FltOpcode::OldVertexColorNormal:
            addOldVertexColorNormalToSoVertexProperty(fltRecordCast<FltRecordOldVertexColorNormal>(record));
            break;
        default: break;
        }
    }
}

void FltObjectToSoSeparator::resolveOffsets(const int32_t* offsets, size_t offsetCount, std::vector<int32_t>& indices,
                                            int& propertyId)
{
    if (offsetCount == 0) return;
    // Kinds and indices of the face's vertices, looked up once each.
    std::vector<std::pair<int, int32_t>>& vertices = faceVertices;
    vertices.clear();
    bool same = true;
    bool allTextured = true;
    for (size_t i = 0; i < offsetCount; ++i) {
        const int32_t offset = offsets[i];
        const FltVertexEntry* entry = context.palettes.vertexAt(static_cast<uint32_t>(offset));
        const int id = FltSharedVertexProperties::kindOf(entry);
        same = same && (vertices.empty() || id == vertices.front().first);
        allTextured = allTextured && fltKindHasTexCoords(id);
        vertices.emplace_back(id, entry ? entry->index : 0);
    }
    if (same) {
        propertyId = vertices.front().first;
        for (const auto& vertex : vertices) indices.push_back(vertex.second);
        return;
    }
    if (!allTextured) {
        FltWarningMessageConsole::notifyMessage("WARNING ! Remove a face having heterogeneous vertices", 1, true);
        return;
    }
    // Vertices with texture coordinates but of two kinds: the others are copied into the
    // richest property with the average normal of its own vertices.
    propertyId = VERTEX_COLOR_NORMAL_UV_PROPERTY_ID;
    SoVertexProperty* richest = context.vertices.property(propertyId);
    SbVec3f sum(0, 0, 0);
    int count = 0;
    for (const auto& vertex : vertices) {
        if (vertex.first != VERTEX_COLOR_NORMAL_UV_PROPERTY_ID) continue;
        if (vertex.second >= 0 && vertex.second < richest->normal.getNum()) sum += richest->normal[vertex.second];
        ++count;
    }
    const SbVec3f normal = sum / static_cast<float>(count);
    for (const auto& vertex : vertices) {
        if (vertex.first == VERTEX_COLOR_NORMAL_UV_PROPERTY_ID)
            indices.push_back(vertex.second);
        else
            indices.push_back(context.vertices.copyToRichest(vertex.first, vertex.second, normal));
    }
}

void FltObjectToSoSeparator::visitVertexList(const FltRecordVertexList* list, std::vector<int32_t>& indices,
                                             int& propertyId)
{
    if (list) resolveOffsets(list->offsets.data(), list->offsets.size(), indices, propertyId);
}

void FltObjectToSoSeparator::visitMorphVertexList(const FltRecordMorphVertexList* list, std::vector<int32_t>& indices,
                                                  int& propertyId)
{
    if (!list) return;
    // The face is drawn at its 0% shape. The record's pairs are read word by word, so the
    // 0% offsets are the first values of the even pairs.
    std::vector<int32_t> offsets;
    for (size_t i = 0; i < list->offsets.size() / 2; ++i) offsets.push_back(list->offsets[2 * i].first);
    resolveOffsets(offsets.data(), offsets.size(), indices, propertyId);
}

void FltObjectToSoSeparator::addFaceToVector(const FltRecordFace* face, const std::vector<int32_t>& indices,
                                             FaceGroup& group)
{
    group.coordIndex.insert(group.coordIndex.end(), indices.begin(), indices.end());
    group.coordIndex.push_back(-1);
    group.textures.push_back(face->texturePatternIndex);
    ++group.faceCounter;
    addFltFaceMaterialToSoMaterial(face, group.material, group.faceCounter);
    // The face's entry in the group's material: one entry per face, in order.
    group.materialIndex.push_back(static_cast<int32_t>(group.materialIndex.size()));
}

// Face colours and materials.

void FltObjectToSoSeparator::addFltFaceMaterialToSoMaterial(const FltRecordFace* face, FltFaceMaterialEntries& material,
                                                            int entry)
{
    const FltFaceMaterialEntry e = fltClassicFaceMaterial(*face, context.palettes, context.version, objectTransparency);
    if (!e.set) {
        context.log << "bad color index\n";
        return;
    }
    material.setColors(entry, e.ambient, e.diffuse, e.specular, e.emissive, e.shininess);
    if (e.setsTransparency) material.setTransparency(entry, e.transparency);
}

// Face sets.

bool FltObjectToSoSeparator::isSoIndexedFaceSetNeedsManyTextureFiles(const std::vector<int32_t>& textures)
{
    for (int32_t t : textures)
        if (t != textures.front()) return true;
    return false;
}

int FltObjectToSoSeparator::getTextureFileIndex(const std::vector<int32_t>& textures)
{
    for (int32_t t : textures)
        if (t != -1) return t;
    return -1;
}

SbName FltObjectToSoSeparator::getSoIndexedFaceSetNameFromSoVertexProperty(SoVertexProperty* property)
{
    static const SbName names[4] = {"SoIFSVertexColor", "SoIFSVertexColorNormal", "SoIFSVertexColorUV",
                                    "SoIFSVertexColorNormalUV"};
    for (int id = VERTEX_COLOR_PROPERTY_ID; id <= VERTEX_COLOR_NORMAL_UV_PROPERTY_ID; ++id)
        if (property && property == context.vertices.property(id)) return names[id - 1];
    FltWarningMessageConsole::notifyMessage(
        "WARNING ! I can't give a name for a SoIndexedFaceSet\n since This SoVertexProperty doesn'fit with one of "
        "the 4 global SoVertexProperty\n SO_INDEXED_FACE_SET_WITH_UNDEFINED_VERTEX_NAME returned",
        3, true);
    return "SoIFSVertexUNDEFINED";
}

size_t FltObjectToSoSeparator::copyOneFaceVertexIndices(std::vector<int32_t>& target,
                                                       const std::vector<int32_t>& coordIndex, size_t position)
{
    while (position < coordIndex.size()) {
        const int32_t index = coordIndex[position++];
        target.push_back(index);
        if (index == -1) break;
    }
    return position;
}

void FltObjectToSoSeparator::buildAndAddIndexedFaceSetFromIndicesVector(const std::vector<int32_t>& coordIndex,
                                                                        const std::vector<int32_t>& materialIndex,
                                                                        const std::vector<int32_t>& textures,
                                                                        SoVertexProperty* property)
{
    if (isSoIndexedFaceSetNeedsManyTextureFiles(textures))
        buildAndAddIndexedFaceSetFromIndicesVectorManyTextureFile(coordIndex, materialIndex, textures, property);
    else
        buildAndAddIndexedFaceSetFromIndicesVectorOneTextureFile(coordIndex, materialIndex, textures, property);
}

void FltObjectToSoSeparator::buildAndAddIndexedFaceSetFromIndicesVectorOneTextureFile(
    const std::vector<int32_t>& coordIndex, const std::vector<int32_t>& materialIndex,
    const std::vector<int32_t>& textures, SoVertexProperty* property)
{
    SoIndexedFaceSet* faceSet = context.pool.faceSet();
    {
        const FltFreshField freshProperty(faceSet->vertexProperty), freshCoords(faceSet->coordIndex),
            freshMaterials(faceSet->materialIndex);
        faceSet->vertexProperty = property;
        faceSet->coordIndex.setValues(0, static_cast<int>(coordIndex.size()), coordIndex.data());
        faceSet->materialIndex.setValues(0, static_cast<int>(materialIndex.size()), materialIndex.data());
    }
    faceSet->setName(getSoIndexedFaceSetNameFromSoVertexProperty(property));

    const int texture = getTextureFileIndex(textures);
    if (texture == -1) {
        destination->addChild(faceSet);
        return;
    }
    auto* isolate = new SoSeparator;
    static const SbName isolateName("isolateTexturesNodes");
    isolate->setName(isolateName);
    // A pattern absent from the palette gets no texture node.
    auto found = context.textures.find(texture);
    if (found != context.textures.end()) isolate->addChild(found->second);
    isolate->addChild(faceSet);
    destination->addChild(isolate);
}

void FltObjectToSoSeparator::buildAndAddIndexedFaceSetFromIndicesVectorManyTextureFile(
    const std::vector<int32_t>& coordIndex, const std::vector<int32_t>& materialIndex,
    const std::vector<int32_t>& textures, SoVertexProperty* property)
{
    std::map<int, SoIndexedFaceSetToFinalize> byTexture;
    size_t position = 0;
    for (size_t face = 0; face < textures.size() && position < coordIndex.size(); ++face) {
        SoIndexedFaceSetToFinalize& entry = byTexture[textures[face]];
        position = copyOneFaceVertexIndices(entry.coordIndex, coordIndex, position);
        if (face < materialIndex.size()) entry.materialIndex.push_back(materialIndex[face]);
        entry.texturePatternIndex = textures[face];
    }
    for (auto& [texture, entry] : byTexture)
        buildAndAddIndexedFaceSetFromIndicesVectorOneTextureFile(entry.coordIndex, entry.materialIndex, {texture},
                                                                 property);
}

// Old vertex records.

void FltObjectToSoSeparator::OldVertexFaces::appendIndex()
{
    coordIndex.push_back(count);
    ++count;
}

void FltObjectToSoSeparator::OldVertexFaces::closeFace()
{
    if (!coordIndex.empty() && coordIndex.back() != -1) coordIndex.push_back(-1);
}

void FltObjectToSoSeparator::addOldVertexToSoVertexProperty(const FltRecordOldVertex* record)
{
    if (!record) return;
    const int n = oldVertex.count;
    oldVertex.getProperty()->vertex.set1Value(n, SbVec3f(static_cast<float>(record->Xcoordinate),
                                                    static_cast<float>(record->Ycoordinate),
                                                    static_cast<float>(record->Zcoordinate)));
    oldVertex.getProperty()->texCoord.set1Value(n, SbVec2f(record->texture[0], record->texture[1]));
    oldVertex.appendIndex();
}

void FltObjectToSoSeparator::addOldVertexColorToSoVertexProperty(const FltRecordOldVertexColor* record)
{
    if (!record) return;
    oldVertexColor.getProperty()->vertex.set1Value(
        oldVertexColor.count, SbVec3f(static_cast<float>(record->Xcoordinate), static_cast<float>(record->Ycoordinate),
                                      static_cast<float>(record->Zcoordinate)));
    oldVertexColor.appendIndex();
}

void FltObjectToSoSeparator::addOldVertexColorNormalToSoVertexProperty(const FltRecordOldVertexColorNormal* record)
{
    if (!record) return;
    oldVertexColorNormal.getProperty()->vertex.set1Value(
        oldVertexColorNormal.count,
        SbVec3f(static_cast<float>(record->Xcoordinate), static_cast<float>(record->Ycoordinate),
                static_cast<float>(record->Zcoordinate)));
    oldVertexColorNormal.appendIndex();
}

void FltObjectToSoSeparator::buildOldVertexFaceSet(OldVertexFaces& faces, const char* name)
{
    if (faces.coordIndex.empty()) return;
    auto* faceSet = new SoIndexedFaceSet;
    faceSet->setName(name);
    faceSet->vertexProperty = faces.getProperty();
    faceSet->coordIndex.setValues(0, static_cast<int>(faces.coordIndex.size()), faces.coordIndex.data());
    destination->addChild(faceSet);
}

void FltObjectToSoSeparator::buildAndAddIndexedFaceSetFromOldVertex() { buildOldVertexFaceSet(oldVertex, "OLD_VERTEX"); }

void FltObjectToSoSeparator::buildAndAddIndexedFaceSetFromOldVertexColor()
{
    buildOldVertexFaceSet(oldVertexColor, "OLD_VERTEX_COLOR");
}

void FltObjectToSoSeparator::buildAndAddIndexedFaceSetFromOldVertexColorNormal()
{
    buildOldVertexFaceSet(oldVertexColorNormal, "OLD_VERTEX_COLOR_NORMAL");
}
