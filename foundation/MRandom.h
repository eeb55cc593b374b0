#pragma once
// The one random generator of the process: a 32-bit linear congruential
// generator shared by the tree scatter, the pillar jitter and the Spaghetti
// strings. Main thread only.

#include <cstdint>

// The state, 0 at the start; users that want fresh numbers set it first.
extern uint32_t MRandomSeed;

// 0 for n below 2 (a draw is still made); the draw modulo n up to 32766; for
// larger n one of 10000 evenly spread values of [0, n).
int32_t MRandomInt(int32_t n);

// A value of [min, max) on a scale of 10000 steps, the bounds taken in either
// order; the lower bound when they are equal (a draw is still made).
float MRandomRange(float a, float b);
