// The search for cameras, on a thread of its own.
#pragma once

struct d__ProbeMatchesType;
class AddressReader;

/// A thread's body: searches with the default times, then clears user and callback, which lets the next search in.
void* ThreadSearch(void*);

/// Multicasts the Probes and reports each camera that answers to the registered callback, until `idleRounds` times
/// nothing (or nothing sensible) came for `recvTimeoutSeconds`, or 72 answers came. Values outside 1 to 10 become 2 s
/// and 3 rounds. Returns 0 when there was an answer, -1 when none was or the Probe could not be sent.
int LoadDevice(int recvTimeoutSeconds, int idleRounds);

/// Reports the devices of one reply. Returns how many of them count.
int reportMatches(const d__ProbeMatchesType& matches, AddressReader& addresses);
