#pragma once

/// The memory that this process keeps in the machine's main memory, in mebibytes; 0 where the system does not
/// tell.
namespace quilmora::bench::residentMemory {

/// Forgets the peak so far.
void resetPeak();

/// The highest value since then.
double peak();

} // namespace quilmora::bench::residentMemory
