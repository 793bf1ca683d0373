// The database an external reference names, converted by a nested conversion and shared by
// every reference to it from this database.
#include <Inventor/nodes/SoSeparator.h>

#include <string>

#include "convert/FltReferenceChain.h"
#include "convert/FltToInventor.h"
#include "diagnostics/FltWarningMessageConsole.h"
#include "reader/FltFileInput.h"
#include "reader/FltReferencePath.h"

bool FltToInventor::convertReferencedFile(const std::string& name, SoSeparator* reference)
{
    const char* directory = context.input.getDirName();
    const std::string path = fltpath::externalReference(directory ? directory : "", name);
    if (!FltFileInput::canOpen(path.c_str())) {
        FltWarningMessageConsole::notifyMessage("ERROR! CAN'T RESOLVE EXTERNAL REFERENCE: " + name, 3, true);
        return false;
    }

    // The nested parse writes where this one does: its opening line goes into the log. A
    // file that is shared or refused is only opened, for that line, and not read again.
    const std::string key = FltFileInput::nameOf(path.c_str());
    auto converted = externalFiles.find(key);
    if (converted != externalFiles.end()) {
        FltFileInput::announce(path.c_str(), &context.log, &context.errors);
        // The same node as every earlier reference to this file from this file.
        reference->addChild(converted->second);
        return true;
    }
    // Every nested conversion has tables of its own, so only the chain of files being
    // converted can tell a file that references itself, directly or through others.
    if (!context.references.admit(key, name)) {
        FltFileInput::announce(path.c_str(), &context.log, &context.errors);
        return true;
    }
    FltFileInput input(path.c_str(), &context.log, &context.errors);

    auto* nestedRoot = new SoSeparator;
    reference->addChild(nestedRoot);
    nodes.holdNotification(nestedRoot);
    externalFiles[key] = nestedRoot;
    const int heldBefore = nestedRoot->getRefCount();
    {
        FltReferenceChain::Link link(context.references, key);
        // The hierarchy's depth limit spans the whole chain: the nested walk recurses on
        // this one's stack.
        context.convertReference(input, fltpath::nestedTexturePrefix(context.texturePrefix, name), hierarchyDepth,
                                 nestedRoot);
    }
    // The nested header visit keeps a reference on its root, as it does for the caller's
    // root; this root is held by the reference's separator instead, so it is given back.
    while (nestedRoot->getRefCount() > heldBefore) nestedRoot->unrefNoDelete();
    return true;
}
