// A singly linked list of elements that others own, with an iterator. Positions count from 0 at the head. There is no
// lock: callers take turns.
#pragma once

#include <cstdint>

struct ZrListNode
{
    ZrListNode* next;
    void* element;
};

struct ZrList
{
    std::int32_t count;
    ZrListNode* head;
};

struct ZrListIterator
{
    ZrListNode* current;   ///< null at the end
    ZrListNode** prevLink; ///< the link that points to the current node
    ZrList* list;
    std::int32_t position;
};

// Every function gives -1 for a null list or iterator, null where it returns an element.
extern "C" {

/// Empties the record without freeing anything; 0.
int zr_list_init(ZrList* list);
int zr_list_size(const ZrList* list);
/// 1 when `pos` lies at or behind the end, else 0.
int zr_list_eol(const ZrList* list, int pos);
/// Inserts so that the element comes to stand at `pos`; -1 and positions behind the end append; one below -1 inserts
/// after the first node, if there is one. Returns the new count, or -1 when there is no memory.
int zr_list_add(ZrList* list, void* element, int pos);
/// The element at `pos`; null when there is none.
void* zr_list_get(const ZrList* list, int pos);
/// Takes out the node at `pos` and frees it, not the element. Returns the new count, or -1 when there is none.
int zr_list_remove(ZrList* list, int pos);
/// Empties the list from its head, hands each element to `freeElement` (if given) once it is out of the list, and
/// frees the record with the C allocator; 0.
int zr_list_special_free(ZrList* list, void (*freeElement)(void*));
/// The same with the C allocator's free for the elements.
int zr_list_ofchar_free(ZrList* list);

/// Begins at the head. Returns its element, null when the list is empty.
void* zr_list_get_first(ZrList* list, ZrListIterator* it);
/// Moves on. Returns the element, null at the end.
void* zr_list_get_next(ZrListIterator* it);
/// Takes out the current node and moves on to the one behind it. Returns its element, null at the end.
void* zr_list_iterator_remove(ZrListIterator* it);
/// Adds as zr_list_add does; the iterator stays at its element. Returns the new count, or -1.
int zr_list_iterator_add(ZrListIterator* it, void* element, int pos);
}
