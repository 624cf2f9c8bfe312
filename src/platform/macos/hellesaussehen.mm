// References are counted by hand.

#include "platform/macos/hellesaussehen.h"

#import <AppKit/AppKit.h>

namespace kalvaro {

void hellesAussehen()
{
    @autoreleasepool {
        NSApp.appearance = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
    }
}

} // namespace kalvaro
