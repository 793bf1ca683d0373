// Plain C entry points for tools that need more than the scene graph tells: the facts of a
// database as the reader sees them, its statistics file, and the console's messages.
//
// They sit beside convertFrom under the prefix qetzflt, so that a host that loads the
// library with dlopen finds them by name. None of them writes a log file.
#pragma once

extern "C" {

// Receives one fact of a database: a key and its value, both NUL-terminated.
typedef void (*QetzfltFactFunction)(void* user, const char* key, const char* value);

// Parses the database without converting it and reports, in this order:
//   "formatRevision" (the header's revision), "units" (the vertex coordinate units code),
//   "packedColorMode" ("1" or "0"), "id" (the header's name),
//   one "record" per opcode met, ascending: "<opcode> <count> <record heading>",
//   "recordTotal", then one "externalReference" per reference record ("<file name>") and
//   one "texturePattern" per texture pattern record ("<pattern index> <file name>"), in
//   file order, names as written in the file.
// Returns 0 when the file was parsed, 1 when it cannot be read or is not an OpenFlight
// database (then only the console messages tell why). Nothing is written to standard
// output or error; console messages are kept but not echoed.
int qetzfltInspect(const char* path, QetzfltFactFunction fact, void* user);

// Writes the statistics file, the input file name followed by ".stat" (record counts by
// opcode). Returns 0 when written, 1 when the database could not be parsed.
int qetzfltWriteStatistics(const char* path);

// The console's stored messages, oldest first; text is null and level 0 out of range.
int qetzfltMessageCount(void);
const char* qetzfltMessageText(int index);
int qetzfltMessageLevel(int index);
}
