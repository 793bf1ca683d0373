// The foreign-file kit for .flt files, built as the loadable module libSoFLTFileKit.so.
#include "SoFLTFileKit.h"

#include <Inventor/SbName.h>
#include <Inventor/SoInput.h>
#include <Inventor/nodes/SoSeparator.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "QetzFlt/QetzFlt.h"

SO_KIT_SOURCE(SoFLTFileKit);

void SoFLTFileKit::initClass(void)
{
    if (getClassTypeId() != SoType::badType()) return;
    SO_KIT_INIT_CLASS(SoFLTFileKit, SoForeignFileKit, "ForeignFileKit");
    SoForeignFileKit::registerFileExtension(getClassTypeId(), "flt", SoFLTFileKit::identify);
}

SoFLTFileKit::SoFLTFileKit(void)
{
    SO_KIT_CONSTRUCTOR(SoFLTFileKit);
    SO_KIT_INIT_INSTANCE();
}

SoFLTFileKit::~SoFLTFileKit(void) {}

// A database begins with a header record, as the library tells.
SbBool SoFLTFileKit::identify(const char* filename) { return qetzfltIsDatabase(filename) ? TRUE : FALSE; }

SbBool SoFLTFileKit::canReadFile(const char* filename) const
{
    return filename ? identify(filename) : TRUE;
}

SbBool SoFLTFileKit::readFile(const char* filename)
{
    if (!filename || !*filename) return FALSE;
    std::error_code ec;
    std::filesystem::path absolute = std::filesystem::absolute(filename, ec);
    const std::string directory = ec ? std::string(".") : absolute.lexically_normal().parent_path().string();
    // The database as the OpenFlight format means it, unless QETZFLT_CLASSIC asks (set to
    // anything but "0") for exactly what convertFrom gives.
    const char* classic = std::getenv("QETZFLT_CLASSIC");
    const bool asAuthored = !classic || !*classic || std::strcmp(classic, "0") == 0;
    SoInput::addDirectoryFirst(directory.c_str());
    SoSeparator* root = asAuthored ? qetzfltConvert(filename, QETZFLT_BUILD_AS_AUTHORED) : convertFrom(filename);
    SoInput::removeDirectory(directory.c_str());
    if (!root) return FALSE;
    // A refused database comes back with no reference.
    const bool converted = root->getRefCount() > 0;
    root->ref();
    if (converted) setAnyPart("topSeparator", root);
    root->unref();
    return converted ? TRUE : FALSE;
}

SoSeparator* SoFLTFileKit::convert(void)
{
    auto* scene = new SoSeparator;
    if (SoNode* top = getAnyPart("topSeparator", FALSE)) scene->addChild(top);
    return scene;
}
