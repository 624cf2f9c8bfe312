// Declarations for checking types on other systems, written from Apple's public documentation; nothing is
// ever linked or run with them, and on a Mac nobody sees them.
// Here: what GNUstep's Foundation lacks of Apple's.
#pragma once

#include_next <Foundation/Foundation.h>

#include <CoreServices/CoreServices.h>

@class NSAppleEventDescriptor;

@interface NSAppleEventManager (KalvaroPruefung)
@property (class, readonly, strong) NSAppleEventManager *sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

@interface NSBundle (KalvaroPruefung)
@property (class, readonly, strong) NSBundle *mainBundle;
@property (readonly, copy) NSString *bundleIdentifier;
@end
