// References are counted by hand.

#include "platform/macos/wiederoeffnen.h"

#import <CoreServices/CoreServices.h>
#import <Foundation/Foundation.h>

#include <utility>

@interface KalvaroWiederoeffnung : NSObject {
    std::function<void()> _ruf;
}
- (instancetype)initMitRuf:(std::function<void()>)ruf;
- (void)ereignis:(NSAppleEventDescriptor *)ereignis antwort:(NSAppleEventDescriptor *)antwort;
@end

@implementation KalvaroWiederoeffnung

- (instancetype)initMitRuf:(std::function<void()>)ruf
{
    self = [super init];
    if (self != nil) {
        _ruf = std::move(ruf);
    }
    return self;
}

- (void)ereignis:(NSAppleEventDescriptor *)ereignis antwort:(NSAppleEventDescriptor *)antwort
{
    (void)ereignis;
    (void)antwort;
    _ruf();
}

@end

namespace kalvaro {

std::shared_ptr<void> wiederoeffnenHoeren(std::function<void()> ruf)
{
    @autoreleasepool {
        KalvaroWiederoeffnung *const hoerer =
            [[KalvaroWiederoeffnung alloc] initMitRuf:std::move(ruf)];
        [[NSAppleEventManager sharedAppleEventManager] setEventHandler:hoerer
                                                           andSelector:@selector(ereignis:antwort:)
                                                         forEventClass:kCoreEventClass
                                                            andEventID:kAEReopenApplication];
        return {hoerer, [](void *dieser) {
                    @autoreleasepool {
                        [[NSAppleEventManager sharedAppleEventManager]
                            removeEventHandlerForEventClass:kCoreEventClass
                                                 andEventID:kAEReopenApplication];
                        [static_cast<KalvaroWiederoeffnung *>(dieser) release];
                    }
                }};
    }
}

} // namespace kalvaro
