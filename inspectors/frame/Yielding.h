#pragma once

// Giving time back to the host. An inspector that runs long calls these now and then; what happens, and how
// often, is up to the host, which may do other work meanwhile or throw to end the evaluation. Outside an
// evaluation, and where the host has no use for it, they do nothing.

/// Something small was done, such as a chunk of a file.
void Trickle();
/// Others may have their turn.
void YieldTimeSlice();
