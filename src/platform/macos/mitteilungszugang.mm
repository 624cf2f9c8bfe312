// Automatic reference counting.

#include "platform/macos/macmitteilungen.h"

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

namespace {

using Klickruf = std::function<void(const QString &ziel)>;

NSString *const zielfeld = @"url"; // of the user info

} // namespace

@interface KalvaroMitteilungsempfang : NSObject <UNUserNotificationCenterDelegate>
- (instancetype)initMitRuf:(Klickruf)ruf;
@end

@implementation KalvaroMitteilungsempfang {
    Klickruf _ruf;
}

- (instancetype)initMitRuf:(Klickruf)ruf
{
    self = [super init];
    if (self != nil) {
        _ruf = std::move(ruf);
    }
    return self;
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)__unused stelle
       willPresentNotification:(UNNotification *)__unused mitteilung
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions wie))fertig
{
    fertig(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionList);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)__unused stelle
    didReceiveNotificationResponse:(UNNotificationResponse *)antwort
             withCompletionHandler:(void (^)(void))fertig
{
    const id ziel = antwort.notification.request.content.userInfo[zielfeld];
    const bool geklickt =
        [antwort.actionIdentifier isEqualToString:UNNotificationDefaultActionIdentifier];
    if (geklickt && [ziel isKindOfClass:NSString.class]) {
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
    return NSBundle.mainBundle.bundleIdentifier == nil
               ? nil
               : UNUserNotificationCenter.currentNotificationCenter;
}

void zeigen(const QString &titel, const QString &inhalt, const std::optional<QString> &ziel,
            const std::function<void(const QString &grund)> &gescheitert)
{
    const auto ruf = gescheitert;
    if (stelle() == nil) {
        ruf(QStringLiteral("kalvaro läuft nicht aus „kalvaro.app“"));
        return;
    }
    UNMutableNotificationContent *const was = [[UNMutableNotificationContent alloc] init];
    was.title = alsText(titel);
    was.body = alsText(inhalt);
    if (ziel) {
        was.userInfo = @{zielfeld : alsText(*ziel)};
    }
    UNNotificationRequest *const bitte =
        [UNNotificationRequest requestWithIdentifier:NSUUID.UUID.UUIDString
                                             content:was
                                             trigger:nil];
    [stelle() addNotificationRequest:bitte
               withCompletionHandler:^(NSError *fehler) {
                 if (fehler != nil) {
                     ruf(QString::fromUtf8(fehler.localizedDescription.UTF8String));
                 }
               }];
}

} // namespace

Mitteilungszugang Mitteilungszugang::desSystems()
{
    Mitteilungszugang zugang;
    zugang.erlaubnisErbitten = [] {
        [stelle() requestAuthorizationWithOptions:UNAuthorizationOptionAlert |
                                                  UNAuthorizationOptionSound
                                completionHandler:^(BOOL, NSError *) {
                                }];
    };
    zugang.zeigen = kalvaro::zeigen;
    zugang.empfangen = [](const Klickruf &geklickt) {
        // The centre does not hold its delegate.
        static KalvaroMitteilungsempfang *empfang = nil;
        empfang = [[KalvaroMitteilungsempfang alloc] initMitRuf:geklickt];
        stelle().delegate = empfang;
    };
    return zugang;
}

} // namespace kalvaro
