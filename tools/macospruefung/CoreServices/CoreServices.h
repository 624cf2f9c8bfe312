// Declarations for checking types on other systems, written from Apple's public documentation; nothing is
// ever linked or run with them, and on a Mac nobody sees them.
#pragma once

typedef unsigned int AEEventClass;
typedef unsigned int AEEventID;

// "Apple Event Manager": the codes 'aevt' and 'rapp'.
enum : AEEventClass { kCoreEventClass = 0x61657674 };
enum : AEEventID { kAEReopenApplication = 0x72617070 };
