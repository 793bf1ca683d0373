// The names a scene will take from its records, made before the scene is built.
#pragma once

class FltRecordStore;

// Makes Coin's name for the id of every record that names a node (the store's
// namingRecords: groups, objects, levels of detail, degrees of freedom, switches, clip
// regions, texts, long ids). Coin's name table is searched along chains of entries for every
// name made, its own included; entries made one after another lie together in memory, where
// made among the nodes of a large scene they lie scattered, and a database of tens of
// thousands of named objects would then spend a fifth of its conversion waiting on memory in
// those searches.
void fltMakeRecordNames(const FltRecordStore& records);
