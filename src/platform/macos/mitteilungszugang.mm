// References are counted by hand.

#include "platform/macos/macmitteilungen.h"

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

namespace {

using Klickruf = std::function<void(const QString &ziel)>;

NSString *const zielfeld = @"url"; // of the user info

} // namespace

@interface KalvaroMitteilungsempfang : NSObject <UNUserNotificationCenterDelegate> {
    Klickruf _ruf;
}
- (instancetype)initMitRuf:(Klickruf)ruf;
@end

@implementation KalvaroMitteilungsempfang

- (instancetype)initMitRuf:(Klickruf)ruf
{
    self = [super init];
    if (self != nil) {
        _ruf = std::move(ruf);
    }
    return self;
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)stelle
       willPresentNotification:(UNNotification *)mitteilung
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions wie))fertig
{
    (void)stelle;
    (void)mitteilung;
    fertig(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)stelle
    didReceiveNotificationResponse:(UNNotificationResponse *)antwort
             withCompletionHandler:(void (^)(void))fertig
{
    (void)stelle;
    const id ziel = [antwort.notification.request.content.userInfo objectForKey:zielfeld];
    const bool geklickt =
        [antwort.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier];
    if (geklickt && [ziel isKindOfClass:[NSString class]]) {
        _ruf(QString::fromUtf8([(NSString *)ziel UTF8String]));
    }
    fertig();
}

@end

namespace kalvaro {

namespace {

NSString *alsText(const QString &text)
{
    return @(text.toUtf8().constData());
}

// The centre ends a program that has no bundle to show as the sender.
UNUserNotificationCenter *stelle()
{
    return [NSBundle mainBundle].bundleIdentifier == nil
               ? nil
               : [UNUserNotificationCenter currentNotificationCenter];
}

void erlaubnisErbitten()
{
    @autoreleasepool {
        [stelle()
            requestAuthorizationWithOptions:UNAuthorizationOptionAlert | UNAuthorizationOptionSound
                          completionHandler:^(BOOL, NSError *){
                          }];
    }
}

void zeigen(const QString &titel, const QString &inhalt, const std::optional<QString> &ziel,
            const std::function<void(const QString &grund)> &gescheitert)
{
    @autoreleasepool {
        const auto ruf = gescheitert; // the block holds a copy of it
        if (stelle() == nil) {
            ruf(QStringLiteral("kalvaro läuft nicht aus „kalvaro.app“"));
            return;
        }
        UNMutableNotificationContent *const was =
            [[[UNMutableNotificationContent alloc] init] autorelease];
        was.title = alsText(titel);
        was.body = alsText(inhalt);
        if (ziel) {
            was.userInfo = @{zielfeld : alsText(*ziel)};
        }
        UNNotificationRequest *const bitte =
            [UNNotificationRequest requestWithIdentifier:[NSUUID UUID].UUIDString
                                                 content:was
                                                 trigger:nil];
        [stelle() addNotificationRequest:bitte
                   withCompletionHandler:^(NSError *fehler) {
                     if (fehler != nil) {
                         ruf(QString::fromUtf8(fehler.localizedDescription.UTF8String));
                     }
                   }];
    }
}

// The centre does not hold whom it tells.
void empfangen(const Klickruf &geklickt)
{
    @autoreleasepool {
        static KalvaroMitteilungsempfang *empfang = nil;
        KalvaroMitteilungsempfang *const bisher = empfang;
        empfang = [[KalvaroMitteilungsempfang alloc] initMitRuf:geklickt];
        stelle().delegate = empfang;
        [bisher release];
    }
}

} // namespace

Mitteilungszugang Mitteilungszugang::desSystems()
{
    return {.erlaubnisErbitten = kalvaro::erlaubnisErbitten,
            .zeigen = kalvaro::zeigen,
            .empfangen = kalvaro::empfangen};
}

} // namespace kalvaro
