// SoFLTFileKit: opens OpenFlight databases in any Coin application that reads files.
//
// Coin reads a file it does not recognise as Inventor through a foreign-file kit: it
// looks for a node kit class named after the file's extension ("SoFLTFileKit" for .flt),
// loads the module libSoFLTFileKit.so from the library path when the class is unknown, and
// calls its initClass, which registers the extension. The application needs nothing but
// SoDB::readAll (with node kits initialised, as every Coin GUI binding does); the
// converted scene sits under the kit's topSeparator part.
#pragma once

#include <Inventor/annex/ForeignFiles/SoForeignFileKit.h>
#include <Inventor/nodekits/SoSubKit.h>

class SoFLTFileKit : public SoForeignFileKit {
    typedef SoForeignFileKit inherited;
    SO_KIT_HEADER(SoFLTFileKit);

public:
    static void initClass(void);
    SoFLTFileKit(void);

    static SbBool identify(const char* filename);
    SbBool canReadFile(const char* filename = NULL) const override;
    // Converts the database with libQetzFlt, its directory first on Coin's search path so
    // that its textures load; false when the conversion was refused.
    SbBool readFile(const char* filename) override;
    // A new separator (reference count 0) holding the converted scene.
    SoSeparator* convert(void) override;

protected:
    ~SoFLTFileKit(void) override;
};
