// Small helpers for writing Inventor multiple-value fields and releasing table nodes.
#pragma once

#include <Inventor/nodes/SoNode.h>

#include <algorithm>

namespace fltfield {

// Writes one entry of a multiple-value field in place, without notification; entries
// outside the field are dropped. The caller marks the field changed once its writes end.
template <class Field, class Value>
void writeEntry(Field& field, int index, const Value& value)
{
    if (index < 0 || index >= field.getNum()) return;
    const_cast<Value*>(field.getValues(0))[index] = value;
}

// Grows a field to newSize entries, the new ones set to fill.
template <class Field, class Value>
void growField(Field& field, int newSize, const Value& fill)
{
    const int old = field.getNum();
    if (newSize <= old) return;
    field.setNum(newSize);
    Value* values = field.startEditing();
    std::fill(values + old, values + newSize, fill);
    field.finishEditing();
}

// Sets entry i (i >= 0) of a multiple-value field; entries between the old end and i get
// fill, so that no entry is ever left undefined.
template <class Field, class Value>
void setEntry(Field& field, int i, const Value& value, const Value& fill)
{
    growField(field, i, fill);
    field.set1Value(i, value);
}

// Entry i of a field, or fallback when the field has no such entry.
template <class Field, class Value>
Value entryOr(const Field& field, int i, const Value& fallback)
{
    return i >= 0 && i < field.getNum() ? field[i] : fallback;
}

// Frees a node that no part of the graph took up, and leaves the others to the graph.
inline void releaseIfUnused(SoNode* node)
{
    if (!node) return;
    node->ref();
    node->unref();
}

}  // namespace fltfield
