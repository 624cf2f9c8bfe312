// References are counted by hand.

#include "platform/macos/laufendebuendel.h"

#import <AppKit/AppKit.h>

namespace kalvaro {

QStringList laufendeBuendel()
{
    QStringList liste;
    @autoreleasepool {
        for (NSRunningApplication *eine in NSWorkspace.sharedWorkspace.runningApplications) {
            NSString *const ort = eine.bundleURL.path;
            if (ort != nil) {
                liste.append(QString::fromUtf8(ort.UTF8String));
            }
        }
    }
    return liste;
}

} // namespace kalvaro
