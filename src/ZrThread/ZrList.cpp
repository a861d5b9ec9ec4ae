#include "ZrThread/ZrList.h"

#include <algorithm>
#include <cstdlib>

#include "ZrThread/ZrMemory.h"

namespace
{

/// Where an element added at `pos` comes to stand.
int landing(const ZrList& list, int pos)
{
    if (pos == -1 || pos >= list.count)
        return list.count;
    return pos < -1 ? std::min(1, list.count) : pos;
}

/// The link that leads to the node at `pos`, which is at most the count.
ZrListNode** linkAt(ZrList& list, int pos)
{
    ZrListNode** link = &list.head;
    while (pos-- > 0)
        link = &(*link)->next;
    return link;
}

/// Takes out the node behind a link. Returns its element.
void* unlinkNode(ZrList& list, ZrListNode** link)
{
    ZrListNode* node = *link;
    void* element = node->element;
    *link = node->next;
    --list.count;
    zr_free(node);
    return element;
}

void* elementOf(const ZrListNode* node)
{
    return node == nullptr ? nullptr : node->element;
}

} // namespace

int zr_list_init(ZrList* list)
{
    if (list == nullptr)
        return -1;
    *list = {};
    return 0;
}

int zr_list_size(const ZrList* list)
{
    return list == nullptr ? -1 : list->count;
}

int zr_list_eol(const ZrList* list, int pos)
{
    if (list == nullptr)
        return -1;
    return pos >= list->count ? 1 : 0;
}

int zr_list_add(ZrList* list, void* element, int pos)
{
    if (list == nullptr)
        return -1;
    auto* node = static_cast<ZrListNode*>(zr_malloc(sizeof(ZrListNode)));
    if (node == nullptr)
        return -1;
    ZrListNode** link = linkAt(*list, landing(*list, pos));
    *node = {.next = *link, .element = element};
    *link = node;
    return ++list->count;
}

void* zr_list_get(const ZrList* list, int pos)
{
    if (list == nullptr || pos < 0 || pos >= list->count)
        return nullptr;
    const ZrListNode* node = list->head;
    while (pos-- > 0)
        node = node->next;
    return node->element;
}

int zr_list_remove(ZrList* list, int pos)
{
    if (list == nullptr || pos < 0 || pos >= list->count)
        return -1;
    unlinkNode(*list, linkAt(*list, pos));
    return list->count;
}

int zr_list_special_free(ZrList* list, void (*freeElement)(void*))
{
    if (list == nullptr)
        return -1;
    while (list->count > 0) {
        void* element = unlinkNode(*list, &list->head);
        if (freeElement != nullptr)
            freeElement(element);
    }
    zr_free(list);
    return 0;
}

int zr_list_ofchar_free(ZrList* list)
{
    return zr_list_special_free(list, std::free);
}

void* zr_list_get_first(ZrList* list, ZrListIterator* it)
{
    if (it == nullptr)
        return nullptr;
    *it = {};
    if (list == nullptr)
        return nullptr;
    *it = {.current = list->head, .prevLink = &list->head, .list = list, .position = 0};
    return elementOf(it->current);
}

void* zr_list_get_next(ZrListIterator* it)
{
    if (it == nullptr || it->current == nullptr)
        return nullptr;
    it->prevLink = &it->current->next;
    it->current = it->position + 1 < it->list->count ? it->current->next : nullptr;
    ++it->position;
    return elementOf(it->current);
}

void* zr_list_iterator_remove(ZrListIterator* it)
{
    if (it == nullptr || it->current == nullptr)
        return nullptr;
    if (it->position < it->list->count) {
        unlinkNode(*it->list, it->prevLink);
        it->current = *it->prevLink;
    }
    return elementOf(it->current);
}

int zr_list_iterator_add(ZrListIterator* it, void* element, int pos)
{
    if (it == nullptr || it->list == nullptr)
        return -1;
    const int where = landing(*it->list, pos);
    const int count = zr_list_add(it->list, element, where);
    if (count == -1 || where > it->position)
        return count;
    if (where == it->position) // the new node stands in between
        it->prevLink = linkAt(*it->list, where + 1);
    ++it->position;
    return count;
}
