// Valid names and PNG textures in the VRML scene that qetzflt convert --vrml2 writes.
#include "VrmlOutput.h"

#include <Inventor/SbName.h>
#include <Inventor/VRMLnodes/SoVRMLImageTexture.h>
#include <Inventor/fields/SoField.h>
#include <Inventor/fields/SoMFNode.h>
#include <Inventor/fields/SoSFNode.h>
#include <Inventor/misc/SoChildList.h>
#include <Inventor/lists/SoFieldList.h>
#include <Inventor/nodes/SoNode.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <map>
#include <ostream>
#include <set>
#include <unordered_set>
#include <vector>

#include "QetzFltLibrary.h"
#include "ToolSupport.h"

namespace fs = std::filesystem;

namespace {

// Every node below root, each once, in depth-first order: children of groups and nodes in
// node fields (a VRML shape's appearance and geometry, a switch's choices, a LOD's levels).
std::vector<SoNode*> allNodes(SoNode* root)
{
    std::vector<SoNode*> nodes;
    std::unordered_set<SoNode*> seen;
    std::vector<SoNode*> pending{root};
    while (!pending.empty()) {
        SoNode* node = pending.back();
        pending.pop_back();
        if (!node || !seen.insert(node).second) continue;
        nodes.push_back(node);
        std::vector<SoNode*> below;
        SoFieldList fields;
        node->getFields(fields);
        for (int i = 0; i < fields.getLength(); ++i) {
            SoField* field = fields[i];
            if (field->isOfType(SoSFNode::getClassTypeId())) {
                below.push_back(static_cast<SoSFNode*>(field)->getValue());
            } else if (field->isOfType(SoMFNode::getClassTypeId())) {
                auto* list = static_cast<SoMFNode*>(field);
                for (int k = 0; k < list->getNum(); ++k) below.push_back((*list)[k]);
            }
        }
        if (SoChildList* children = node->getChildren())
            for (int k = 0; k < children->getLength(); ++k) below.push_back((*children)[k]);
        // Reversed onto the stack, so that the first child comes out first.
        pending.insert(pending.end(), below.rbegin(), below.rend());
    }
    return nodes;
}

bool isIdentifierStart(unsigned char c) { return std::isalpha(c) || c == '_'; }

bool isIdentifierRest(unsigned char c)
{
    return c > 0x20 && c < 0x7F && !std::strchr("\"#'()+,.[\\]{|}", c);
}

// VRML97's keywords, which no name may be.
bool isKeyword(const std::string& name)
{
    static const std::set<std::string> keywords{"DEF",   "EXTERNPROTO", "FALSE",        "IS",    "NULL",
                                                "PROTO", "ROUTE",       "TO",           "TRUE",  "USE",
                                                "eventIn", "eventOut",  "exposedField", "field"};
    return keywords.count(name) != 0;
}

bool isIdentifier(const std::string& name)
{
    if (name.empty() || isKeyword(name) || !isIdentifierStart(static_cast<unsigned char>(name[0]))) return false;
    return std::all_of(name.begin(), name.end(), [](char c) { return isIdentifierRest(static_cast<unsigned char>(c)); });
}

// The image's file name without folder and extension, reduced to characters that need no
// escaping in a URL; "texture" when nothing is left.
std::string pngStem(const std::string& image)
{
    std::string stem = fs::path(image).stem().string();
    for (char& c : stem)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_' && c != '-') c = '_';
    return stem.empty() ? "texture" : stem;
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

bool isPng(const std::string& path) { return lowered(fs::path(path).extension().string()) == ".png"; }

// A URL with a scheme (http:, file:...) is no file name of ours.
bool hasScheme(const std::string& url)
{
    const size_t colon = url.find(':');
    if (colon == std::string::npos || colon < 2) return false;  // "C:/..." is a drive
    return std::all_of(url.begin(), url.begin() + static_cast<long>(colon), [](unsigned char c) {
        return std::isalnum(c) || c == '+' || c == '-' || c == '.';
    });
}

// The library's last message, without its "WARNING ! " label.
std::string lastMessage(QetzFltLibrary& library)
{
    if (!library.lastMessageCount || !library.lastMessageText || library.lastMessageCount() <= 0)
        return "no reason given";
    const char* text = library.lastMessageText(library.lastMessageCount() - 1);
    std::string message = text ? text : "no reason given";
    const std::string label = "WARNING ! ";
    if (message.rfind(label, 0) == 0) message.erase(0, label.size());
    return message;
}

}  // namespace

std::string vrmlIdentifier(const std::string& name)
{
    std::string id = name;
    for (char& c : id)
        if (!isIdentifierRest(static_cast<unsigned char>(c))) c = '_';
    if (!id.empty() && !isIdentifierStart(static_cast<unsigned char>(id[0]))) id.insert(0, "_");
    if (isKeyword(id)) id += "_";
    return id;
}

int makeVrmlNamesValid(SoNode* root)
{
    const std::vector<SoNode*> nodes = allNodes(root);
    // Names that are identifiers already keep them; the others take new ones around them.
    std::set<std::string> taken;
    for (SoNode* node : nodes) {
        const std::string name = node->getName().getString();
        if (isIdentifier(name)) taken.insert(name);
    }
    std::map<std::string, std::string> renamed;  // nodes of one name keep sharing one
    int changed = 0;
    for (SoNode* node : nodes) {
        const std::string name = node->getName().getString();
        if (name.empty() || isIdentifier(name)) continue;
        auto it = renamed.find(name);
        if (it == renamed.end()) {
            const std::string base = vrmlIdentifier(name);
            std::string candidate = base;
            for (int n = 2; taken.count(candidate); ++n) candidate = base + "_" + std::to_string(n);
            taken.insert(candidate);
            it = renamed.emplace(name, candidate).first;
        }
        node->setName(SbName(it->second.c_str()));
        ++changed;
    }
    return changed;
}

int writeVrmlTexturesAsPng(SoNode* root, const std::string& outputDir, QetzFltLibrary& library,
                           std::ostream& errors)
{
    std::vector<SoVRMLImageTexture*> textures;
    for (SoNode* node : allNodes(root))
        if (node->isOfType(SoVRMLImageTexture::getClassTypeId())) textures.push_back(static_cast<SoVRMLImageTexture*>(node));
    if (textures.empty()) return 0;

    // Every image named, so that no PNG written takes the place of one of them.
    std::set<std::string> sources;
    for (SoVRMLImageTexture* texture : textures)
        for (int i = 0; i < texture->url.getNum(); ++i) {
            const std::string url = texture->url[i].getString();
            if (!url.empty() && !hasScheme(url)) sources.insert(resolveAgainst(url, outputDir));
        }

    std::map<std::string, std::string> urlOf;  // image -> the url that now names it, "" if none
    std::set<std::string> pngNames;             // lower case: distinct on any file system
    int failed = 0;
    for (SoVRMLImageTexture* texture : textures) {
        std::vector<std::string> urls;
        for (int i = 0; i < texture->url.getNum(); ++i) {
            const std::string url = texture->url[i].getString();
            if (url.empty()) continue;
            if (hasScheme(url)) {
                urls.push_back(url);
                continue;
            }
            const std::string source = resolveAgainst(url, outputDir);
            auto done = urlOf.find(source);
            if (done == urlOf.end()) {
                std::string written;
                if (isPng(source)) {
                    written = url;  // VRML viewers read PNG: referenced as it is
                } else if (!library.writeImageAsPng) {
                    errors << "qetzflt convert: texture " << url << " kept as it is: the library (" << library.path()
                           << ") cannot write PNG images\n";
                    written = url;
                } else {
                    const std::string stem = pngStem(source);
                    std::string name = stem + ".png";
                    for (int n = 2; pngNames.count(lowered(name)) || sources.count(resolveAgainst(name, outputDir));
                         ++n)
                        name = stem + "_" + std::to_string(n) + ".png";
                    pngNames.insert(lowered(name));
                    const std::string png = resolveAgainst(name, outputDir);
                    if (library.writeImageAsPng(source.c_str(), png.c_str()) == 0) {
                        written = name;
                    } else {
                        errors << "qetzflt convert: texture " << url << " left out of the VRML file: "
                               << lastMessage(library) << "\n";
                        ++failed;
                    }
                    if (library.clearMessages) library.clearMessages();
                }
                done = urlOf.emplace(source, written).first;
            }
            if (!done->second.empty()) urls.push_back(done->second);
        }
        // Held back: a changed url would make Coin load the image again, from here.
        const SbBool notify = texture->url.enableNotify(FALSE);
        texture->url.setNum(0);
        for (const std::string& url : urls) texture->url.set1Value(texture->url.getNum(), SbString(url.c_str()));
        texture->url.enableNotify(notify);
    }
    return failed;
}
