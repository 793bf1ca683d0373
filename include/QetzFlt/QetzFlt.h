/*
 * QetzFlt: OpenFlight databases (.flt) as Open Inventor scene graphs built with Coin3D.
 *
 * The one header a host needs. The library answers to plain, undecorated names, so a host
 * may link it or load it with dlopen("libQetzFlt.so") and look the names up.
 *
 * Conversions run one at a time in a process, whichever thread calls; each runs on the
 * calling thread from start to end. Warnings and errors go to a message console: each is
 * kept, and echoed to standard error as
 *
 *     ERROR! Not an Openflight Input !
 *     (Warning Level: 3)
 *
 * The messages of the last conversion on the calling thread stay readable until its next one.
 */
#ifndef QETZFLT_QETZFLT_H
#define QETZFLT_QETZFLT_H

/* The library is built with its own names hidden; these functions are what it exports. */
#if defined(__GNUC__)
#define QETZFLT_API __attribute__((visibility("default")))
#else
#define QETZFLT_API
#endif

#ifdef __cplusplus
class SoSeparator;
extern "C" {
#else
typedef struct SoSeparator SoSeparator;
#endif

/*
 * Converts the database at path as the established converter did: the scene graph, the log
 * PATH.log next to it (the parse progress and a labelled dump of every record; without the
 * dump when the environment variable QETZFLT_NO_LOG is set to anything but "0"), standard
 * output pointed at that log while the conversion runs. Returns the root with a reference
 * count of 1, which the caller owns and releases with unref(); a refused database gives an
 * empty root with a count of 0; null only for an empty path.
 */
QETZFLT_API SoSeparator* convertFrom(const char* path);
/* "Skerrymoor" and "8.6.3", the same pointers on every call. */
QETZFLT_API const char* getProductName(void);
QETZFLT_API const char* getVersion(void);

/* The options word of qetzfltConvert: one log choice, one builder and any of the flags. */
enum {
    /* The log: PATH.log with the parse progress and the record dump, */
    QETZFLT_LOG_FILE = 0x0,
    /* PATH.log with the parse progress only, */
    QETZFLT_LOG_NO_DUMP = 0x1,
    /* or no log file at all (standard output is then left alone). */
    QETZFLT_LOG_NONE = 0x2,
    QETZFLT_LOG_MASK = 0xF,
    /* The builder: the classic conversion, the established converter's scene exactly, */
    QETZFLT_BUILD_CLASSIC = 0x00,
    /* or the as-authored one, which draws the database as the OpenFlight format means it:
     * colours by light mode, materials, transparency, culling, textures beside the
     * database, meshes, the matrices of faces. */
    QETZFLT_BUILD_AS_AUTHORED = 0x10,
    QETZFLT_BUILD_MASK = 0xF0,
    /* Nothing written to standard output (the "Success in opening file" line). */
    QETZFLT_NO_STANDARD_OUTPUT = 0x100,
    /* Messages kept but not echoed, and nothing written to standard error. */
    QETZFLT_NO_ECHO = 0x200
};

/*
 * Converts the database at path with the options given (QETZFLT_NO_LOG is not read). The
 * root is returned as by convertFrom; null for an empty path or an options word with bits
 * this library does not know (with a console message).
 */
QETZFLT_API SoSeparator* qetzfltConvert(const char* path, unsigned int options);

/*
 * Converts the database at path as authored and writes it as glTF 2.0 to output: a binary
 * .glb holding everything, or (any other name) a .gltf with its buffer OUTPUT-STEM.bin and
 * its textures as PNG images beside it. The hierarchy keeps its names and transforms under
 * a root that turns the database's units into metres and its Z up into glTF's Y up; each
 * mesh becomes triangles with positions, normals, texture coordinates and vertex colours
 * where they vary, with a metallic-roughness material (base colour and alpha, BLEND where
 * transparent, doubleSided where both sides are drawn, KHR_materials_unlit where unlit).
 * Switches keep the children their mask turns on; of the levels of detail under one
 * parent, those seen from nearest are written. The options word chooses the log and the
 * flags as for qetzfltConvert; its builder bits are not read. Files are written under a
 * temporary name and renamed: nothing half-written is left.
 * Returns 0 when written, 1 when the database could not be read, 2 when the output could
 * not be written, 3 when the database draws nothing (then nothing is written); the
 * messages say why and what was left out. The messages are read as after a conversion.
 */
QETZFLT_API int qetzfltWriteGltf(const char* path, const char* output, unsigned int options);

/* The faces that the last qetzfltWriteGltf on the calling thread wrote: the polygons of the
 * glTF's meshes, a mesh that several places draw counted once; 0 when it wrote nothing. */
QETZFLT_API long qetzfltLastGltfFaceCount(void);

/* Receives how far a conversion has come: a fraction from 0 to 1. */
typedef void (*QetzfltProgressFunction)(void* user, double fraction);

/*
 * Sets the function that the conversions and glTF writes the calling thread starts
 * (convertFrom, qetzfltConvert, qetzfltWriteGltf) call on that thread with how far they
 * have come, and user, handed back on every call; null, the default, for none. Each thread
 * has its own; a run takes the one set when it starts. The fraction rises from 0 as the
 * database is read (by its bytes) and then built and written; it is told at most once per
 * hundredth, so at most 101 times in a run, and exactly once as 1.0, when the run has
 * ended with a scene or with the glTF written (a refused database gets no 1.0). A
 * database's external references are read within its run. The function should return
 * quickly and not start another conversion; it should not throw either: what it throws is
 * caught and dropped.
 */
QETZFLT_API void qetzfltSetProgress(QetzfltProgressFunction function, void* user);

/* The messages of the last conversion, inspection or statistics run on the calling thread,
 * oldest first: their count, and each one's text (null out of range) and level (1 to 3, 3
 * for errors; 0 out of range). */
QETZFLT_API int qetzfltLastMessageCount(void);
QETZFLT_API const char* qetzfltLastMessageText(int index);
QETZFLT_API int qetzfltLastMessageLevel(int index);

/* 1 when the file at path begins as an OpenFlight database does (a header record), else 0;
 * read without blocking. */
QETZFLT_API int qetzfltIsDatabase(const char* path);

/* Receives one fact of a database: a key and its value, both NUL-terminated. */
typedef void (*QetzfltFactFunction)(void* user, const char* key, const char* value);

/*
 * Parses the database without converting it and reports, in this order:
 *   "formatRevision" (the header's revision), "units" (the vertex coordinate units code),
 *   "packedColorMode" ("1" or "0"), "id" (the header's name),
 *   one "record" per opcode met, ascending: "<opcode> <count> <record heading>",
 *   "recordTotal", then one "externalReference" per reference record ("<file name>") and
 *   one "texturePattern" per texture pattern record ("<pattern index> <file name>"), in
 *   file order, names as written in the file.
 * Returns 0 when the file was parsed, 1 when it cannot be read or is not an OpenFlight
 * database (then only the messages tell why). Writes no file and nothing to standard output
 * or error; messages are kept but not echoed.
 */
QETZFLT_API int qetzfltInspect(const char* path, QetzfltFactFunction fact, void* user);

/* Writes PATH.stat, the record counts by opcode. 0 when written, 1 when the database could
 * not be parsed, 2 when the file could not be written (the messages say why). Writes
 * nothing to standard output or error. */
QETZFLT_API int qetzfltWriteStatistics(const char* path);

/*
 * Reads the image file at image through the scene graph library's image reader (SGI .rgb,
 * .rgba, .int, .inta and the other formats of Coin's image loader) and writes it as a PNG
 * file at png, with the image's components (grey, grey and alpha, RGB or RGBA) and its top
 * row first, through a temporary name in the same folder renamed once complete: what VRML97
 * and glTF viewers read. Returns 0 when written, 1 when the image cannot be read (missing,
 * not a regular file, not an image the reader knows), 2 when the PNG cannot be written.
 * Takes its turn with conversions; the messages, one on failure, say why (kept, not echoed:
 * see qetzfltLastMessageText). Writes nothing to standard output or error.
 */
QETZFLT_API int qetzfltWriteImageAsPng(const char* image, const char* png);

/*
 * Gives back the caller's reference to a scene (any root, such as those convertFrom and
 * qetzfltConvert return) and, when it was the last, frees the scene the way Coin frees
 * fastest: last child first, depth first. Coin keeps one process-wide list per node name
 * and searches and shifts it as each named node dies, so a scene of many like-named nodes
 * costs its host the square of their number to free with unref(); through this function
 * about 0.6 of that at 40,000 objects. Nodes held elsewhere as well (another graph, a
 * host's reference) are only let go of, as unref() would. A root with no reference (a refused
 * database) is freed. Null is ignored. Does not take a conversion's turn: call it from the
 * thread that owns the scene, as unref().
 */
QETZFLT_API void qetzfltReleaseScene(SoSeparator* root);

/* Every message the process has been given since it last cleared them, oldest first (see
 * qetzfltLastMessageText); a text stays valid until the next conversion or clearing. */
QETZFLT_API int qetzfltMessageCount(void);
QETZFLT_API const char* qetzfltMessageText(int index);
QETZFLT_API int qetzfltMessageLevel(int index);
/* Empties the process's list, which otherwise grows with every conversion; the messages of
 * each thread's last conversion stay. */
QETZFLT_API void qetzfltClearMessages(void);

#ifdef __cplusplus
}
#endif

#endif
