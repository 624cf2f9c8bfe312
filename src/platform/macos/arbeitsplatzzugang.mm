// Automatic reference counting.

#include "platform/macos/arbeitsplatzzugang.h"

#include <QWindow>

#import <AppKit/AppKit.h>

namespace kalvaro {

namespace {

QString alsText(NSString *text)
{
    return text == nil ? QString() : QString::fromUtf8(text.UTF8String);
}

// The error that the others were made of tells the most.
Oeffnungsfehler innerster(NSError *fehler)
{
    for (NSError *grund = fehler; grund != nil;
         grund = grund.userInfo[NSUnderlyingErrorKey]) {
        fehler = grund;
    }
    return {alsText(fehler.domain), fehler.code};
}

void oeffnen(const QString &buendel, const Arbeitsplatzzugang::Oeffnungsruf &fertig)
{
    NSURL *const ort = [NSURL fileURLWithPath:@(buendel.toUtf8().constData()) isDirectory:YES];
    NSWorkspaceOpenConfiguration *const wie = [NSWorkspaceOpenConfiguration configuration];
    wie.activates = YES;
    const auto ruf = fertig;
    [NSWorkspace.sharedWorkspace
        openApplicationAtURL:ort
               configuration:wie
           completionHandler:^(NSRunningApplication *programm, NSError *fehler) {
             ruf(programm == nil ? std::optional(innerster(fehler)) : std::nullopt);
           }];
}

void nachVorn(QWindow &fenster)
{
    fenster.raise();
    fenster.requestActivate();
    // A widget's native handle on this system, "Qt for macOS".
    NSView *const ansicht = (__bridge NSView *)reinterpret_cast<void *>(fenster.winId());
    NSWindow *const rahmen = ansicht.window;
    rahmen.collectionBehavior |= NSWindowCollectionBehaviorMoveToActiveSpace;
    [NSApp activateIgnoringOtherApps:YES];
    [rahmen makeKeyAndOrderFront:nil];
}

void auftreten(Arbeitsplatz::Auftritt auftritt)
{
    switch (auftritt) {
    case Arbeitsplatz::Auftritt::Regulaer:
        [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
        return;
    case Arbeitsplatz::Auftritt::Zubehoer:
        [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
    }
}

Arbeitsplatzzugang::Halter wachen(const std::function<void()> &geweckt)
{
    NSNotificationCenter *const stelle = NSWorkspace.sharedWorkspace.notificationCenter;
    const auto ruf = geweckt;
    const id wache = [stelle addObserverForName:NSWorkspaceDidWakeNotification
                                         object:nil
                                          queue:NSOperationQueue.mainQueue
                                     usingBlock:^(NSNotification *) {
                                       ruf();
                                     }];
    return {(__bridge_retained void *)wache, [stelle](void *diese) {
                [stelle removeObserver:(__bridge_transfer id)diese];
            }};
}

} // namespace

Arbeitsplatzzugang Arbeitsplatzzugang::desSystems()
{
    return {.oeffnen = kalvaro::oeffnen,
            .nachVorn = kalvaro::nachVorn,
            .auftreten = kalvaro::auftreten,
            .wachen = kalvaro::wachen};
}

} // namespace kalvaro
