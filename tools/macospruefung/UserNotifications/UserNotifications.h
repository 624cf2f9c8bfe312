// Declarations for checking types on other systems, written from Apple's public documentation; nothing is
// ever linked or run with them, and on a Mac nobody sees them.
// Here: the framework UserNotifications, as far as kalvaro asks for it. macOS 10.14, banners and the list 11.
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

@interface UNNotificationContent : NSObject
@property (readonly, copy) NSDictionary *userInfo;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property (copy) NSString *title;
@property (copy) NSString *body;
@property (copy) NSDictionary *userInfo;
@end

@class UNNotificationTrigger;

@interface UNNotificationRequest : NSObject
@property (readonly, copy) UNNotificationContent *content;
+ (instancetype)requestWithIdentifier:(NSString *)identifier
                              content:(UNNotificationContent *)content
                              trigger:(UNNotificationTrigger *)trigger;
@end

@interface UNNotification : NSObject
@property (readonly, copy) UNNotificationRequest *request;
@end

@interface UNNotificationResponse : NSObject
@property (readonly, copy) UNNotification *notification;
@property (readonly, copy) NSString *actionIdentifier;
@end

@class UNUserNotificationCenter;

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler;
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationResponse:(UNNotificationResponse *)response
             withCompletionHandler:(void (^)(void))completionHandler;
@end

@interface UNUserNotificationCenter : NSObject
@property (class, readonly, strong) UNUserNotificationCenter *currentNotificationCenter;
@property (weak) id<UNUserNotificationCenterDelegate> delegate;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)options
                      completionHandler:(void (^)(BOOL granted, NSError *error))completionHandler;
- (void)addNotificationRequest:(UNNotificationRequest *)request
         withCompletionHandler:(void (^)(NSError *error))completionHandler;
@end
