// For the check on other systems alone (cmake/macospruefung.cmake), written from Apple's public
// documentation. On a Mac nobody sees it.
#pragma once

typedef unsigned int AEEventClass;
typedef unsigned int AEEventID;

// "Apple Event Manager": the codes 'aevt' and 'rapp'.
enum : AEEventClass { kCoreEventClass = 0x61657674 };
enum : AEEventID { kAEReopenApplication = 0x72617070 };
