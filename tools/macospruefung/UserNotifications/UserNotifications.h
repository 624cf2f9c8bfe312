// For the check on other systems alone (cmake/macospruefung.cmake), written from Apple's public
// documentation. On a Mac nobody sees it. The fields are those of the stand-ins. Here: the
// framework UserNotifications, as far as kalvaro asks for it. macOS 10.14, banners and the list 11.
#pragma once

#import <Foundation/Foundation.h>

typedef NSUInteger UNAuthorizationOptions;
enum : UNAuthorizationOptions {
    UNAuthorizationOptionBadge = 1 << 0,
    UNAuthorizationOptionSound = 1 << 1,
    UNAuthorizationOptionAlert = 1 << 2,
};

typedef NSUInteger UNNotificationPresentationOptions;
enum : UNNotificationPresentationOptions {
    UNNotificationPresentationOptionBadge = 1 << 0,
    UNNotificationPresentationOptionSound = 1 << 1,
    UNNotificationPresentationOptionList = 1 << 3,
    UNNotificationPresentationOptionBanner = 1 << 4,
};

extern NSString *const UNNotificationDefaultActionIdentifier;

@interface UNNotificationContent : NSObject {
@public
    NSString *_title;
    NSString *_body;
    NSDictionary *_userInfo;
}
@property(readonly, copy) NSString *title;
@property(readonly, copy) NSString *body;
@property(readonly, copy) NSDictionary *userInfo;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(copy) NSString *title;
@property(copy) NSString *body;
@property(copy) NSDictionary *userInfo;
@end

@class UNNotificationTrigger;

@interface UNNotificationRequest : NSObject {
@public
    NSString *_identifier;
    UNNotificationContent *_content;
    UNNotificationTrigger *_trigger;
}
@property(readonly, copy) NSString *identifier;
@property(readonly, copy) UNNotificationContent *content;
@property(readonly, copy) UNNotificationTrigger *trigger;
+ (instancetype)requestWithIdentifier:(NSString *)identifier
                              content:(UNNotificationContent *)content
                              trigger:(UNNotificationTrigger *)trigger;
@end

@interface UNNotification : NSObject {
@public
    UNNotificationRequest *_request;
}
@property(readonly, copy) UNNotificationRequest *request;
@end

@interface UNNotificationResponse : NSObject {
@public
    UNNotification *_notification;
    NSString *_actionIdentifier;
}
@property(readonly, copy) UNNotification *notification;
@property(readonly, copy) NSString *actionIdentifier;
@end

@class UNUserNotificationCenter;

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:
             (void (^)(UNNotificationPresentationOptions options))completionHandler;
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler;
@end

@interface UNUserNotificationCenter : NSObject
+ (UNUserNotificationCenter *)currentNotificationCenter;
@property(weak) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError *error))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest *)request
         withCompletionHandler:(void (^)(NSError *error))completionHandler;
@end
