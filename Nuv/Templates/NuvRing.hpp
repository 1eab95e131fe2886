// Rings of links, as the lists and the maps weave them. Invariant: every link's neighbours point
// back at it.
#pragma once

namespace nuv
{
template <class Link>
inline void CloseRing(Link* sentinel)
{
    sentinel->prev.b = sentinel;
    sentinel->next.b = sentinel;
}

template <class Link>
inline bool IsLone(const Link* sentinel)
{
    return sentinel->next.b == sentinel;
}

/// Moves the links [first, last) to before `pos`, from whichever ring they are in.
template <class Link>
inline void Transfer(Link* pos, Link* first, Link* last)
{
    if (first == last || pos == first || pos == last)
        return;
    Link* const lastMoved = last->prev.b;
    Link* const beforePos = pos->prev.b;
    Link* const beforeFirst = first->prev.b;
    lastMoved->next.b = pos;
    beforeFirst->next.b = last;
    beforePos->next.b = first;
    pos->prev.b = lastMoved;
    last->prev.b = beforeFirst;
    first->prev.b = beforePos;
}

/// Moves all links of `source`'s ring to before `pos`.
template <class Link>
inline void TransferAll(Link* pos, Link* source)
{
    Transfer(pos, source->next.b, source);
}

/// Exchanges what hangs in two rings.
template <class Link>
inline void ExchangeRings(Link* a, Link* b)
{
    Link held;
    CloseRing(&held);
    TransferAll(&held, a);
    TransferAll(a, b);
    TransferAll(b, &held);
}
}  // namespace nuv
