// Automatic reference counting.

#include "platform/macos/hellesaussehen.h"

#import <AppKit/AppKit.h>

namespace kalvaro {

void hellesAussehen()
{
    NSApp.appearance = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
}

} // namespace kalvaro
