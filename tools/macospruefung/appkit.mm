#include "attrappen.h"

#import <AppKit/AppKit.h>

using kalvaro::attrappen::arbeitsplatz;
using kalvaro::attrappen::Arbeitsplatzlage;
using namespace Qt::StringLiterals;

NSApplication *NSApp = nil;
NSString *NSWorkspaceDidWakeNotification = @"NSWorkspaceDidWakeNotification";
NSAppearanceName const NSAppearanceNameAqua = @"NSAppearanceNameAqua";

// The classes of the frameworks have GNUstep's fields, which differ from release to release; what
// the stand-ins keep is in classes of their own beneath them.
@interface KalvaroAussehen : NSAppearance {
    NSString *name_;
}
- (instancetype)initMitNamen:(NSString *)name;
@end

@interface KalvaroProgramm : NSRunningApplication {
    NSURL *ort_;
}
- (instancetype)initMitOrt:(const QString &)ort;
@end

@interface KalvaroOeffnungsart : NSWorkspaceOpenConfiguration {
    BOOL vorn_;
}
@end

// Unlike GNUstep's, Apple's holds whoever observes until that is over, and no longer.
@interface KalvaroBeobachter : NSObject {
@public
    NSString *name_;
    NSOperationQueue *schlange_;
    void (^ruf_)(NSNotification *);
}
@end

@interface KalvaroStelle : NSNotificationCenter {
@public
    NSMutableArray *beobachter_;
}
@end

namespace {

NSString *alsText(const QString &text)
{
    return @(text.toUtf8().constData());
}

KalvaroStelle *weckstelle()
{
    static KalvaroStelle *const eine = [[KalvaroStelle alloc] init];
    return eine;
}

// The first, with the others beneath it.
NSError *alsFehler(const std::vector<Arbeitsplatzlage::Fehler> &kette)
{
    NSError *oben = nil;
    for (auto einer = kette.rbegin(); einer != kette.rend(); ++einer) {
        NSDictionary *const angaben = oben == nil ? @{} : @{NSUnderlyingErrorKey : oben};
        oben = [NSError errorWithDomain:alsText(einer->bereich)
                                   code:einer->nummer
                               userInfo:angaben];
    }
    return oben;
}

} // namespace

@implementation NSResponder
@end

@implementation NSApplication

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy
{
    arbeitsplatz().auftritt = static_cast<long>(activationPolicy);
    return YES;
}

- (void)setAppearance:(NSAppearance *)appearance
{
    arbeitsplatz().aussehen = QString::fromUtf8(appearance.name.UTF8String);
}

@end

@implementation NSAppearance

+ (instancetype)appearanceNamed:(NSString *)name
{
    return [[[KalvaroAussehen alloc] initMitNamen:name] autorelease];
}

@end

@implementation KalvaroAussehen

- (instancetype)initMitNamen:(NSString *)name
{
    self = [super init];
    if (self != nil) {
        name_ = [name copy];
    }
    return self;
}

- (NSString *)name
{
    return name_;
}

- (void)dealloc
{
    [name_ release];
    [super dealloc];
}

@end

@implementation NSWorkspaceOpenConfiguration

+ (instancetype)configuration
{
    return [[[KalvaroOeffnungsart alloc] init] autorelease];
}

@end

@implementation KalvaroOeffnungsart

- (BOOL)activates
{
    return vorn_;
}

- (void)setActivates:(BOOL)activates
{
    vorn_ = activates;
}

@end

@implementation NSRunningApplication
@end

@implementation KalvaroProgramm

- (instancetype)initMitOrt:(const QString &)ort
{
    self = [super init];
    if (self != nil && !ort.isEmpty()) {
        ort_ = [[NSURL fileURLWithPath:alsText(ort) isDirectory:YES] retain];
    }
    return self;
}

- (NSURL *)bundleURL
{
    return ort_;
}

- (void)dealloc
{
    [ort_ release];
    [super dealloc];
}

@end

@implementation KalvaroBeobachter

- (void)dealloc
{
    [name_ release];
    [schlange_ release];
    Block_release(ruf_);
    [super dealloc];
}

@end

@implementation KalvaroStelle

- (instancetype)init
{
    self = [super init];
    if (self != nil) {
        beobachter_ = [[NSMutableArray alloc] init];
    }
    return self;
}

- (id)addObserverForName:(NSString *)name
                  object:(id)object
                   queue:(NSOperationQueue *)queue
              usingBlock:(void (^)(NSNotification *))block
{
    (void)object;
    KalvaroBeobachter *const einer = [[[KalvaroBeobachter alloc] init] autorelease];
    einer->name_ = [name copy];
    einer->schlange_ = [queue retain];
    einer->ruf_ = Block_copy(block);
    [beobachter_ addObject:einer];
    return einer;
}

- (void)removeObserver:(id)observer
{
    [beobachter_ removeObjectIdenticalTo:observer];
}

@end

@implementation NSWorkspace

+ (NSWorkspace *)sharedWorkspace
{
    static NSWorkspace *const einer = [[NSWorkspace alloc] init];
    return einer;
}

- (NSNotificationCenter *)notificationCenter
{
    return weckstelle();
}

- (NSArray *)runningApplications
{
    NSMutableArray *const alle = [NSMutableArray array];
    for (const QString &ort : arbeitsplatz().laufende) {
        [alle addObject:[[[KalvaroProgramm alloc] initMitOrt:ort] autorelease]];
    }
    return alle;
}

- (void)openApplicationAtURL:(NSURL *)applicationURL
               configuration:(NSWorkspaceOpenConfiguration *)configuration
           completionHandler:(void (^)(NSRunningApplication *app, NSError *error))completionHandler
{
    const QString ort = QString::fromUtf8(applicationURL.path.UTF8String);
    arbeitsplatz().geoeffnet.append(configuration.activates ? ort + u" vorn"_s : ort);
    const auto antwort = Block_copy(completionHandler);
    kalvaro::attrappen::spaeter([ort, antwort, kette = arbeitsplatz().fehler] {
        NSError *const fehler = alsFehler(kette);
        antwort(fehler == nil ? [[[KalvaroProgramm alloc] initMitOrt:ort] autorelease] : nil,
                fehler);
        Block_release(antwort);
    });
}

@end

namespace kalvaro::attrappen {

Arbeitsplatzlage &arbeitsplatz()
{
    static Arbeitsplatzlage lage;
    return lage;
}

void anwendungDa()
{
    if (NSApp == nil) {
        NSApp = [[NSApplication alloc] init];
    }
}

// Where no queue was asked for, the thread that posts would call: none of ours.
void wecken()
{
    @autoreleasepool {
        NSNotification *const was =
            [NSNotification notificationWithName:NSWorkspaceDidWakeNotification
                                          object:[NSWorkspace sharedWorkspace]];
        for (KalvaroBeobachter *einer in [[weckstelle()->beobachter_ copy] autorelease]) {
            if ([einer->name_ isEqualToString:was.name] &&
                einer->schlange_ == [NSOperationQueue mainQueue]) {
                einer->ruf_(was);
            }
        }
    }
}

} // namespace kalvaro::attrappen
