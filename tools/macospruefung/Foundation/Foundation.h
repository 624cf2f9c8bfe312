// For the check on other systems alone (cmake/macospruefung.cmake), written from Apple's public
// documentation. On a Mac nobody sees it. Here: what GNUstep's Foundation lacks of Apple's.
#pragma once

#include_next <Foundation/Foundation.h>

#include <CoreServices/CoreServices.h>

@interface NSAppleEventManager (KalvaroPruefung)
+ (NSAppleEventManager *)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)handleEventSelector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end
