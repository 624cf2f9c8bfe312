// References are counted by hand.

#include "platform/macos/arbeitsplatzzugang.h"

#include <QGuiApplication>
#include <QWindow>

#import <AppKit/AppKit.h>

namespace kalvaro {

using namespace Qt::StringLiterals;

namespace {

QString alsText(NSString *text)
{
    return text == nil ? QString() : QString::fromUtf8(text.UTF8String);
}

// The error that the others were made of tells the most.
Oeffnungsfehler innerster(NSError *fehler)
{
    for (NSError *grund = fehler; grund != nil;
         grund = [grund.userInfo objectForKey:NSUnderlyingErrorKey]) {
        fehler = grund;
    }
    return {alsText(fehler.domain), fehler.code};
}

void oeffnen(const QString &buendel, const Arbeitsplatzzugang::Oeffnungsruf &fertig)
{
    @autoreleasepool {
        NSURL *const ort = [NSURL fileURLWithPath:@(buendel.toUtf8().constData()) isDirectory:YES];
        NSWorkspaceOpenConfiguration *const wie = [NSWorkspaceOpenConfiguration configuration];
        wie.activates = YES;
        const auto ruf = fertig; // the block holds a copy of it
        [[NSWorkspace sharedWorkspace]
            openApplicationAtURL:ort
                   configuration:wie
               completionHandler:^(NSRunningApplication *programm, NSError *fehler) {
                 ruf(programm == nil ? std::optional(innerster(fehler)) : std::nullopt);
               }];
    }
}

// Only the toolkit's platform for this system has windows of it: whoever draws elsewhere has none.
void nachVorn(QWindow &fenster)
{
    if (QGuiApplication::platformName() != u"cocoa") {
        fenster.raise();
        fenster.requestActivate();
        return;
    }
    @autoreleasepool {
        // A window's native handle is its view ("QWindow::winId()", "Qt for macOS").
        NSWindow *const rahmen = reinterpret_cast<NSView *>(fenster.winId()).window;
        rahmen.collectionBehavior |= NSWindowCollectionBehaviorMoveToActiveSpace;
        [rahmen makeKeyAndOrderFront:nil];
        [NSApp activateIgnoringOtherApps:YES];
    }
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
    @autoreleasepool {
        const auto ruf = geweckt; // the block holds a copy of it
        id wache = [[[NSWorkspace sharedWorkspace] notificationCenter]
            addObserverForName:NSWorkspaceDidWakeNotification
                        object:nil
                         queue:[NSOperationQueue mainQueue]
                    usingBlock:^(NSNotification *) {
                      ruf();
                    }];
        return {[wache retain], [](void *diese) {
                    @autoreleasepool {
                        [[[NSWorkspace sharedWorkspace] notificationCenter]
                            removeObserver:static_cast<id>(diese)];
                        [static_cast<id>(diese) release];
                    }
                }};
    }
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
