#include "attrappen.h"

#import <UserNotifications/UserNotifications.h>

using kalvaro::attrappen::mitteilungen;

NSString *const UNNotificationDefaultActionIdentifier =
    @"com.apple.UNNotificationDefaultActionIdentifier";

namespace {

id<UNUserNotificationCenterDelegate> empfaenger = nil; // not held, like Apple's

QString alsText(NSString *text)
{
    return QString::fromUtf8(text.UTF8String);
}

NSString *alsText(const QString &text)
{
    return @(text.toUtf8().constData());
}

} // namespace

@implementation UNNotificationContent

- (void)dealloc
{
    [_title release];
    [_body release];
    [_userInfo release];
    [super dealloc];
}

- (NSString *)title
{
    return _title;
}

- (NSString *)body
{
    return _body;
}

- (NSDictionary *)userInfo
{
    return _userInfo;
}

@end

@implementation UNMutableNotificationContent

@dynamic title, body, userInfo;

- (void)setTitle:(NSString *)title
{
    [_title autorelease];
    _title = [title copy];
}

- (void)setBody:(NSString *)body
{
    [_body autorelease];
    _body = [body copy];
}

- (void)setUserInfo:(NSDictionary *)userInfo
{
    [_userInfo autorelease];
    _userInfo = [userInfo copy];
}

@end

@implementation UNNotificationRequest

+ (instancetype)requestWithIdentifier:(NSString *)identifier
                              content:(UNNotificationContent *)content
                              trigger:(UNNotificationTrigger *)trigger
{
    UNNotificationRequest *const eine = [[[self alloc] init] autorelease];
    eine->_identifier = [identifier copy];
    eine->_content = [content retain];
    eine->_trigger = [(id)trigger retain];
    return eine;
}

- (void)dealloc
{
    [_identifier release];
    [_content release];
    [(id)_trigger release];
    [super dealloc];
}

- (NSString *)identifier
{
    return _identifier;
}

- (UNNotificationContent *)content
{
    return _content;
}

- (UNNotificationTrigger *)trigger
{
    return _trigger;
}

@end

@implementation UNNotification

- (UNNotificationRequest *)request
{
    return _request;
}

@end

@implementation UNNotificationResponse

- (UNNotification *)notification
{
    return _notification;
}

- (NSString *)actionIdentifier
{
    return _actionIdentifier;
}

@end

@implementation UNUserNotificationCenter

+ (UNUserNotificationCenter *)currentNotificationCenter
{
    static UNUserNotificationCenter *const eine = [[UNUserNotificationCenter alloc] init];
    if ([NSBundle mainBundle].bundleIdentifier == nil) {
        [NSException raise:NSInternalInconsistencyException
                    format:@"bundleProxyForCurrentProcess is nil"];
    }
    return eine;
}

- (id<UNUserNotificationCenterDelegate>)delegate
{
    return empfaenger;
}

- (void)setDelegate:(id<UNUserNotificationCenterDelegate>)delegate
{
    empfaenger = delegate;
}

- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError *error))completionHandler
{
    mitteilungen().erlaubnisse.push_back(static_cast<long>(options));
    const auto antwort = Block_copy(completionHandler);
    kalvaro::attrappen::spaeter([antwort] {
        antwort(NO, nil);
        Block_release(antwort);
    });
}

- (void)addNotificationRequest:(UNNotificationRequest *)request
         withCompletionHandler:(void (^)(NSError *error))completionHandler
{
    UNNotificationContent *const inhalt = request.content;
    QMap<QString, QString> angaben;
    for (NSString *name in inhalt.userInfo) {
        angaben.insert(alsText(name), alsText([[inhalt.userInfo objectForKey:name] description]));
    }
    mitteilungen().bitten.push_back({.kennung = alsText(request.identifier),
                                     .titel = alsText(inhalt.title),
                                     .inhalt = alsText(inhalt.body),
                                     .angaben = angaben,
                                     .sofort = request.trigger == nil});
    const auto antwort = Block_copy(completionHandler);
    kalvaro::attrappen::spaeter([antwort, grund = mitteilungen().ablehnung] {
        antwort(!grund ? nil
                       : [NSError errorWithDomain:@"UNErrorDomain"
                                             code:1
                                         userInfo:@{NSLocalizedDescriptionKey : alsText(*grund)}]);
        Block_release(antwort);
    });
}

@end

namespace kalvaro::attrappen {

Mitteilungslage &mitteilungen()
{
    static Mitteilungslage lage;
    return lage;
}

std::optional<long> zeigeart()
{
    @autoreleasepool {
        __block std::optional<long> wie;
        [empfaenger userNotificationCenter:nil
                   willPresentNotification:nil
                     withCompletionHandler:^(UNNotificationPresentationOptions options) {
                       wie = static_cast<long>(options);
                     }];
        return wie;
    }
}

int anfassen(const QString &feld, const QVariant &wert, bool geklickt)
{
    @autoreleasepool {
        const id zahl = [NSNumber numberWithInt:wert.toInt()];
        const id was = wert.typeId() == QMetaType::Int ? zahl : alsText(wert.toString());
        UNMutableNotificationContent *const inhalt =
            [[[UNMutableNotificationContent alloc] init] autorelease];
        inhalt.userInfo = feld.isEmpty() ? @{} : @{alsText(feld) : was};
        UNNotification *const mitteilung = [[[UNNotification alloc] init] autorelease];
        mitteilung->_request = [UNNotificationRequest requestWithIdentifier:@"1"
                                                                    content:inhalt
                                                                    trigger:nil];
        UNNotificationResponse *const antwort = [[[UNNotificationResponse alloc] init] autorelease];
        antwort->_notification = mitteilung;
        antwort->_actionIdentifier = geklickt ? UNNotificationDefaultActionIdentifier
                                              : @"com.apple.UNNotificationDismissActionIdentifier";
        __block int fertig = 0;
        [empfaenger userNotificationCenter:nil
            didReceiveNotificationResponse:antwort
                     withCompletionHandler:^{
                       ++fertig;
                     }];
        return fertig;
    }
}

} // namespace kalvaro::attrappen
