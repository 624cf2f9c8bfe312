// For the check on other systems alone (cmake/macospruefung.cmake), written from Apple's public
// documentation. On a Mac nobody sees it.
#pragma once

extern "C" {

typedef signed long CFIndex;
typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed long long SInt64;
typedef const void *CFTypeRef;
typedef const struct __CFAllocator *CFAllocatorRef;
typedef const struct __CFDictionary *CFDictionaryRef;
typedef const struct __CFNumber *CFNumberRef;
typedef const struct __CFString *CFStringRef;
typedef const struct __CFURL *CFURLRef;
typedef struct __CFError *CFErrorRef;
typedef CFIndex CFNumberType;

enum : CFNumberType { kCFNumberSInt64Type = 4 };

// macOS 10.13.
extern const CFStringRef kCFURLVolumeAvailableCapacityForImportantUsageKey;

void CFRelease(CFTypeRef cf);
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8 *buffer,
                                                 CFIndex bufLen, Boolean isDirectory);
Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key,
                                        void *propertyValueTypeRefPtr, CFErrorRef *error);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void *valuePtr);
}
