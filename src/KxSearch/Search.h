// The search for cameras, on a thread of its own.
#pragma once

#include "KxSearch/SearchRecord.h"

struct d__ProbeMatchesType;

/// Hands the cameras of one search to its callback, as long as that is registered.
class Reporter
{
public:
    Reporter(fSearchCallBack callback, void* user);

    /// Reports the devices of one reply. Returns how many of them count.
    int report(const d__ProbeMatchesType& matches);

private:
    bool isRegistered() const;

    fSearchCallBack callback_;
    void* user_;
    AddressReader addresses_;
};

/// A thread's body: searches with the default times, then clears user and callback, which lets the next search in.
void* ThreadSearch(void*);

/// The same for a search without a callback: it reports nothing, clears nothing, and is counted in g_nSilentSearches.
void* ThreadSilentSearch(void*);

/// Multicasts the Probes and reports each camera that answers to the registered callback, until `idleRounds` times
/// nothing (or nothing sensible) came for `recvTimeoutSeconds`, or 72 answers came, or too much time went by with answers
/// that count for nothing. Values outside 1 to 10 become 2 s and 3 rounds. Returns 0 when there was an answer, -1 when
/// none was or the Probe could not be sent.
int LoadDevice(int recvTimeoutSeconds, int idleRounds);
