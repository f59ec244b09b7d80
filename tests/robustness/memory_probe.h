// Peak memory of the process while a piece of work runs, from the kernel's high-water mark.
#pragma once

#include <functional>

// How far the resident memory of the process rose above its level at the start while `work`
// ran, in MiB. Resets the kernel's high-water mark first (/proc/self/clear_refs), so earlier
// work does not count. Returns a negative value when the kernel offers no such mark.
double PeakGrowthMb(const std::function<void()>& work);

// Allowance for memory that a sanitizer keeps on top of what the code holds (ASan keeps
// freed blocks in quarantine, up to 256 MiB by default); 0 in a plain build.
double SanitizerAllowanceMb();
