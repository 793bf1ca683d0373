// The names a scene will take from its records, made before the scene is built.
#pragma once

#include <Inventor/SbName.h>

#include <cstddef>
#include <vector>

class FltRecordStore;

// Makes Coin's name for the id of every record that names a node (the store's
// namingRecords: groups, objects, levels of detail, degrees of freedom, switches, clip
// regions, texts, long ids). Coin's name table is searched along chains of entries for every
// name made, its own included; entries made one after another lie together in memory, where
// made among the nodes of a large scene they lie scattered, and a database of tens of
// thousands of named objects would then spend a fifth of its conversion waiting on memory in
// those searches. The names are kept, so that a node named from its record takes the name
// made without searching the table again.
class FltRecordNames {
public:
    explicit FltRecordNames(const FltRecordStore& records);

    // The name made for the record at `index` in the store when it spells `id`, else null
    // (a record that names nothing, or a store changed since). The walk asks in file order,
    // so the next record's name is found without a search.
    const SbName* find(size_t index, const char* id);

private:
    const std::vector<size_t>& indices_;
    std::vector<SbName> names_;  // one per index; empty where the record made none
    size_t next_ = 0;
};
