// Automatic reference counting.

#include "platform/macos/wiederoeffnen.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include <utility>

@interface KalvaroWiederoeffnung : NSObject
- (instancetype)initMitRuf:(std::function<void()>)ruf;
- (void)aufhoeren;
@end

@implementation KalvaroWiederoeffnung {
    std::function<void()> _ruf;
}

- (instancetype)initMitRuf:(std::function<void()>)ruf
{
    self = [super init];
    if (self != nil) {
        _ruf = std::move(ruf);
        [NSAppleEventManager.sharedAppleEventManager
            setEventHandler:self
                andSelector:@selector(ereignis:antwort:)
              forEventClass:kCoreEventClass
                 andEventID:kAEReopenApplication];
    }
    return self;
}

- (void)aufhoeren
{
    [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                      andEventID:kAEReopenApplication];
}

- (void)ereignis:(NSAppleEventDescriptor *)__unused ereignis
         antwort:(NSAppleEventDescriptor *)__unused antwort
{
    _ruf();
}

@end

namespace kalvaro {

std::shared_ptr<void> wiederoeffnenHoeren(std::function<void()> ruf)
{
    KalvaroWiederoeffnung *const hoerer =
        [[KalvaroWiederoeffnung alloc] initMitRuf:std::move(ruf)];
    return {(__bridge_retained void *)hoerer,
            [](void *dieser) { [(__bridge_transfer KalvaroWiederoeffnung *)dieser aufhoeren]; }};
}

} // namespace kalvaro
