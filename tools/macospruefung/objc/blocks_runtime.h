// Declarations for checking types on other systems, written from Apple's public documentation; nothing is
// ever linked or run with them, and on a Mac nobody sees them.
// Here: what clang calls for a block ("Block Implementation Specification").
#pragma once

extern "C" {
void *_Block_copy(const void *block);
void _Block_release(const void *block);
}
