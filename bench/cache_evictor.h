// CacheEvictor: puts the CPU caches into the same state before every timed start-up and
// every timed floor parse, so that neither profits from data the other (or the previous
// iteration) left in the caches.
//
// Evict() reads and writes a buffer twice the size of the last-level cache (at least
// 64 MiB), so that what the caches hold afterwards is that buffer. The files stay in the
// system's page cache: both measurements read them from memory, as a host does that starts
// on a warm machine. Costs a few tens of milliseconds per call; the buffer is allocated on
// the first call and kept for the process's life.
#pragma once

class CacheEvictor {
 public:
  static void Evict();
};
