#pragma once

#include <QtGlobal>

/// A number from 0 to 32767 of the process's one generator, seeded once from the tick count.
int NextRandom();

/// Milliseconds since the system started, 32 bits.
quint32 TickCount();
